#include "firmware/StopRequest.h"

namespace tavocal {

StopRequest::StopRequest(KeluBase& workerChannel)
    : channel(workerChannel), exitEvent(platform::makeSyncObject()) {}

void StopRequest::reset() {
    const std::lock_guard<std::mutex> lock(mutex);
    stopState = StopState::None;
    exitEvent->reset();
}

// It is broken under the lock, so that it can only be the worker's read.
void StopRequest::wakeWorker() {
    const std::lock_guard<std::mutex> lock(mutex);
    if (stopState == StopState::Asked) {
        channel.cancelRead();
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

void StopRequest::change(StopState from, StopState to) {
    const std::lock_guard<std::mutex> lock(mutex);
    stopState = stopState == from ? to : stopState;
}

}  // namespace tavocal
