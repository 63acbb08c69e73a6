#include "firmware/StopRequest.h"

namespace tavocal {

StopRequest::StopRequest(KeluBase& workerChannel)
    : channel(workerChannel), exitEvent(platform::makeSyncObject()) {}

void StopRequest::reset() {
    const std::lock_guard<std::mutex> lock(mutex);
    stopState = StopState::None;
    exitEvent->reset();
}

void StopRequest::ask() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (stopState == StopState::None) {
        stopState = StopState::Asked;
    }
}

void StopRequest::wakeWorker() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (stopState == StopState::Asked) {
        channel.cancelRead();
    }
}

bool StopRequest::waitForEnd(std::chrono::milliseconds time) {
    return exitEvent->waitFor(time);
}

void StopRequest::waitForEnd() {
    exitEvent->wait();
}

bool StopRequest::isUnderWay() const {
    const StopState now = state();
    return now == StopState::Asked || now == StopState::Sent;
}

// The read is broken under the lock, so that it can only be the worker's.
void StopRequest::giveUp() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (stopState == StopState::Asked || stopState == StopState::Sent) {
        stopState = StopState::GivenUp;
        channel.cancelRead();
    }
}

bool StopRequest::isAsked() const {
    return state() != StopState::None;
}

bool StopRequest::isGivenUp() const {
    return state() == StopState::GivenUp;
}

void StopRequest::setSent() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (stopState == StopState::Asked) {
        stopState = StopState::Sent;
    }
}

void StopRequest::setEnded() {
    const std::lock_guard<std::mutex> lock(mutex);
    stopState = StopState::Ended;
    exitEvent->set();
}

StopRequest::StopState StopRequest::state() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return stopState;
}

}  // namespace tavocal
