#include "sampling/FailureSummary.h"

#include <gtest/gtest.h>

namespace tavocal::test {

TEST(FailureSummary, SecondWrongAxisTurnsIntoOneGeneralEntry) {
    FailureSummary summary;
    const auto with = [&](int kind, const std::string& sensor) {
        summary.addFailure(static_cast<FailureKind>(kind), sensor);
        return summary.text();
    };
    const std::string axis = "2\tGyroscope: Check Axis Mapping\n";
    const std::string general = "3\tGeneral: Check Movement or Axis Mapping\n";
    EXPECT_EQ(with(0, "Gyroscope"), "1\tGyroscope: Check Calibration\n");
    EXPECT_EQ(with(1, "Gyroscope"), axis);
    EXPECT_EQ(with(0, "Gyroscope") + with(1, "Gyroscope"), axis + axis);
    EXPECT_EQ(with(0, "Accelerometer"), "1\tAccelerometer: Check Calibration\n" + axis);
    EXPECT_EQ(with(1, "Accelerometer"), general);
    EXPECT_EQ(with(0, "Magnetometer") + with(1, "Magnetometer"), general + general);
}

}  // namespace tavocal::test
