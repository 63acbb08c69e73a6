#include "sampling/StageControl.h"

#include "base/Failures.h"
#include "log/Logger.h"

namespace tavocal {

namespace {

constexpr const char* kTimeoutText =
    "DATA COLLECTION FAILED\n Timeout, failed to get stable samples or to detect motion of the "
    "required sensors";
constexpr const char* kNoSamplesText = "DATA COLLECTION FAILED\n Failed to get samples from FW";

}  // namespace

void StageControl::stageDone(bool status) {
    const std::lock_guard<std::mutex> lock(stageMutex);
    setDone(status);
}

void StageControl::stageFailed(const std::string& reason) {
    const std::lock_guard<std::mutex> lock(stageMutex);
    if (failureText.empty()) {
        failureText = reason;
    }
    setDone(false);
}

void StageControl::setDone(bool status) {
    const bool failedBefore = stageFinished && !stageStatus;
    stageFinished = true;
    stageStatus = status && !failedBefore;
    stageCondition.notify_all();
    TAVOCAL_LOG(Info, "SensorManager::stageDone",
                "stageDone with status " + std::to_string(status ? 1 : 0));
}

void StageControl::waitForStage() {
    std::unique_lock<std::mutex> lock(stageMutex);
    if (!stageCondition.wait_for(lock, stageTimeout, [this] { return stageFinished; })) {
        TAVOCAL_LOG(Debug, "SensorManager::waitForStepFinish", "finish to wait mutex, timeout");
        stageStatus = false;
        failureText = kTimeoutText;
    }
    clearAndThrowIfFailed(lock);
}

void StageControl::beginUserStage() {
    const std::lock_guard<std::mutex> lock(stageMutex);
    // A failure between two stages must not get lost.
    if (!stageFinished) {
        stageStatus = true;
    }
}

void StageControl::finishUserStage() {
    std::unique_lock<std::mutex> lock(stageMutex);
    clearAndThrowIfFailed(lock);
}

void StageControl::clearAndThrowIfFailed(std::unique_lock<std::mutex>& lock) {
    stageFinished = false;
    if (stageStatus) {
        return;
    }
    if (failureText.empty()) {
        failureText = kNoSamplesText;
    }
    const std::string reason = failureText;
    lock.unlock();
    throw CalibrationException(reason);
}

void StageControl::reset() {
    const std::lock_guard<std::mutex> lock(stageMutex);
    stageFinished = false;
}

bool StageControl::status() const {
    const std::lock_guard<std::mutex> lock(stageMutex);
    return stageStatus;
}

}  // namespace tavocal
