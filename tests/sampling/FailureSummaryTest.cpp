#include "sampling/FailureSummary.h"

#include <gtest/gtest.h>

namespace tavocal::test {
namespace {

TEST(FailureSummary, SecondWrongAxisTurnsIntoOneGeneralEntry) {
    FailureSummary summary;
    EXPECT_EQ(summary.text(), "");
    summary.addFailure(0, "Gyroscope");
    EXPECT_EQ(summary.text(), "1\tGyroscope: Check Calibration\n");
    summary.addFailure(1, "Gyroscope");
    // What is known to be a wrong axis stays one, and twice at one sensor is still one sensor.
    summary.addFailure(0, "Gyroscope");
    summary.addFailure(1, "Gyroscope");
    summary.addFailure(0, "Accelerometer");
    EXPECT_EQ(summary.text(),
              "1\tAccelerometer: Check Calibration\n2\tGyroscope: Check Axis Mapping\n");
    summary.addFailure(1, "Accelerometer");
    EXPECT_EQ(summary.text(), "3\tGeneral: Check Movement or Axis Mapping\n");
    for (const int kind : {0, 1}) {
        summary.addFailure(kind, "Magnetometer");
        EXPECT_EQ(summary.text(), "3\tGeneral: Check Movement or Axis Mapping\n");
    }
}

}  // namespace
}  // namespace tavocal::test
