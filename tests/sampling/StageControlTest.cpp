#include "sampling/StageControl.h"

#include <gtest/gtest.h>

#include "support/Outcome.h"

namespace tavocal::test {
// What the main thread gets after a wait or a key, which status() has to agree with.
using End = void (StageControl::*)();
static std::string result(StageControl& stages, End end = &StageControl::waitForStage) {
    const std::string message = failureOf([&] { (stages.*end)(); });
    return message + (stages.status() == (message == kNoFailure) ? "" : "; status differs");
}

TEST(StageControl, EndCountsForOneWaitAndNotBeyondAStart) {
    const std::string timeout =
        "DATA COLLECTION FAILED\n Timeout, failed to get stable samples or to detect motion of the "
        "required sensors";
    StageControl stages;
    EXPECT_EQ(std::exchange(stages.stageTimeout, std::chrono::milliseconds(1)).count(), 60000);
    stages.stageDone(true);
    EXPECT_EQ(result(stages), kNoFailure);
    EXPECT_EQ(result(stages), timeout);
    stages.stageDone(true);
    stages.reset();
    EXPECT_EQ(result(stages), timeout);
}

TEST(StageControl, FirstReasonCountsAndNoSuccessCoversIt) {
    StageControl silent;
    silent.stageDone(false);
    EXPECT_EQ(result(silent), "DATA COLLECTION FAILED\n Failed to get samples from FW");
    StageControl stages;
    stages.stageFailed("first");
    stages.stageFailed("second");
    stages.stageDone(true);
    EXPECT_EQ(result(stages), "first");
    stages.stageDone(true);
    EXPECT_EQ(result(stages), kNoFailure);
    // While the key is waited for, and between two steps, only failures count.
    stages.beginUserStage();
    EXPECT_EQ(result(stages, &StageControl::finishUserStage), kNoFailure);
    stages.stageDone(false);
    stages.beginUserStage();
    EXPECT_EQ(result(stages, &StageControl::finishUserStage), "first");
}

}  // namespace tavocal::test
