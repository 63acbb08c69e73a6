#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>

#include "base/Failures.h"
#include "sampling/FailureSummary.h"
#include "sampling/LiveTimeBase.h"
#include "sampling/ReplayMerge.h"
#include "sampling/StageControl.h"
#include "sensors/Sensor.h"

namespace tavocal::test {

namespace {

std::vector<Sample> at(const std::vector<double>& times) {
    std::vector<Sample> samples;
    for (const double time : times) {
        samples.push_back({time, {}});
    }
    return samples;
}

// The streams in the order in which their samples come, such as "0110".
std::string mergedOrder(const std::vector<std::vector<Sample>>& streams) {
    std::vector<const std::vector<Sample>*> pointers;
    for (const auto& stream : streams) {
        pointers.push_back(&stream);
    }
    ReplayMerge merge(pointers);
    std::string order;
    std::size_t stream = 0;
    while (merge.next(stream) != nullptr) {
        order += std::to_string(stream);
    }
    return order;
}

std::string failureOf(StageControl& stages) {
    try {
        stages.waitForStage();
    } catch (const CalibrationException& exception) {
        return exception.what();
    }
    return "passed";
}

}  // namespace

TEST(ReplayMergeTest, EarliestGoesFirstAndTheLaterStreamAtEqualTimes) {
    EXPECT_EQ(mergedOrder({at({1, 3, 3, 9}), at({2, 3})}), "011000");
    EXPECT_EQ(mergedOrder({at({5}), at({5}), at({5})}), "210");
    EXPECT_EQ(mergedOrder({at({}), at({1})}), "1");
    EXPECT_EQ(mergedOrder({}), "");
}

// Whatever the times are, every sample comes exactly once.
TEST(ReplayMergeTest, NothingIsLostBeyondTheHorizon) {
    const double late = 4294967295.0;
    EXPECT_EQ(mergedOrder({at({late, late}), at({late})}), "100");
    EXPECT_EQ(mergedOrder({at({1, late}), at({2, 3, late})}).size(), 5U);
    ReplayMerge withNull({nullptr});
    std::size_t stream = 0;
    EXPECT_EQ(withNull.next(stream), nullptr);
}

TEST(StageControlTest, StageThatEndsBeforeTheWaitIsNotLost) {
    StageControl stages;
    stages.stageDone(true);
    EXPECT_EQ(failureOf(stages), "passed");
    std::thread worker([&stages] { stages.stageDone(true); });
    EXPECT_EQ(failureOf(stages), "passed");
    worker.join();
}

TEST(StageControlTest, FailuresAndTimeoutHaveTheirTexts) {
    StageControl stages;
    stages.stageTimeout = std::chrono::milliseconds(1);
    EXPECT_EQ(failureOf(stages),
              "DATA COLLECTION FAILED\n Timeout, failed to get stable samples or to detect motion "
              "of the required sensors");
    StageControl silent;
    silent.stageDone(false);
    EXPECT_EQ(failureOf(silent), "DATA COLLECTION FAILED\n Failed to get samples from FW");
    StageControl failed;
    failed.stageFailed("first");
    failed.stageFailed("second");
    failed.stageDone(true);
    EXPECT_EQ(failureOf(failed), "first");
}

TEST(StageControlTest, FailureWhileTheKeyIsWaitedForCounts) {
    StageControl stages;
    stages.beginUserStage();
    stages.finishUserStage();
    stages.beginUserStage();
    stages.stageDone(false);
    EXPECT_THROW(stages.finishUserStage(), CalibrationException);
}

TEST(FailureSummaryTest, SecondWrongAxisTurnsIntoOneGeneralEntry) {
    FailureSummary summary;
    EXPECT_EQ(summary.text(), "");
    summary.addFailure(0, "Gyroscope");
    summary.addFailure(1, "Gyroscope");
    summary.addFailure(0, "Gyroscope");
    summary.addFailure(1, "Gyroscope");
    summary.addFailure(0, "Accelerometer");
    EXPECT_EQ(summary.text(),
              "1\tAccelerometer: Check Calibration\n2\tGyroscope: Check Axis Mapping\n");
    summary.addFailure(1, "Accelerometer");
    EXPECT_EQ(summary.text(), "3\tGeneral: Check Movement or Axis Mapping\n");
    summary.addFailure(0, "Magnetometer");
    EXPECT_EQ(summary.text(), "3\tGeneral: Check Movement or Axis Mapping\n");
}

TEST(LiveTimeBaseTest, DataBeginsWhenEverySensorHasDelivered) {
    const std::vector<std::shared_ptr<Sensor>> sensors = {makeSensor({0x0073, 0, 0, 0, 2}),
                                                          makeSensor({0x0076, 0, 0, 0, 2})};
    LiveTimeBase base;
    EXPECT_FALSE(base.place(*sensors[0], 1000.0, sensors));
    EXPECT_FALSE(base.place(*sensors[0], 1010.0, sensors));
    EXPECT_FALSE(base.place(*sensors[1], 1015.0, sensors));
    EXPECT_EQ(base.place(*sensors[0], 1020.5, sensors), 0.0);
    EXPECT_EQ(base.place(*sensors[1], 1020.0, sensors), 0.0);
    EXPECT_EQ(base.place(*sensors[1], 1025.0, sensors), 4.5);
}

TEST(LiveTimeBaseTest, SensorThatNeverDeliversFailsAfterFiveSeconds) {
    const std::vector<std::shared_ptr<Sensor>> sensors = {makeSensor({0x0073, 0, 0, 0, 2}),
                                                          makeSensor({0x0076, 0, 0, 0, 2})};
    LiveTimeBase base;
    EXPECT_FALSE(base.place(*sensors[0], 1000.0, sensors));
    EXPECT_FALSE(base.place(*sensors[0], 6000.0, sensors));
    EXPECT_THROW(base.place(*sensors[0], 6000.1, sensors), CalibrationException);
}

}  // namespace tavocal::test
