#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>

namespace tavocal {

// The hand-over of a stage's end from whoever sees the data to the main thread, which waits for it.
// A stage that ends before the wait begins is not lost, and a failure that nobody has waited for
// yet is not covered by a later success.
class StageControl {
  public:
    // Any thread.
    void stageDone(bool status);
    // The same for a failure, with what the main thread shall throw. The first reason counts.
    void stageFailed(const std::string& reason);

    // Waits for the end of the stage, at most `stageTimeout`, and clears it. Throws
    // CalibrationException with the reason if the stage failed or timed out. Main thread.
    void waitForStage();

    // A stage that the operator's key ends: between the two calls only failures count. The second
    // one throws as waitForStage. Main thread.
    void beginUserStage();
    void finishUserStage();

    // Forgets an earlier stage's end. Before sampling starts.
    void reset();

    // The last stage ended well.
    bool status() const;

    // Replaceable by tests.
    std::chrono::milliseconds stageTimeout{60000};

  private:
    // Both need stageMutex held.
    void setDone(bool status);
    void clearAndThrowIfFailed(std::unique_lock<std::mutex>& lock);

    mutable std::mutex stageMutex;
    std::condition_variable stageCondition;
    bool stageFinished = false;
    bool stageStatus = false;
    std::string failureText;
};

}  // namespace tavocal
