#include "sensors/model/StageSegments.h"

#include "support/InertialBench.h"

namespace tavocal::test {

// A sample on a boundary lies before it; the last stage runs to the end of the samples.
TEST(StageSegmentsTest, CutsTheSamplesByTheTimesOfTheStages) {
    const auto sensor = makeNamedSensor("Gyroscope_2");
    const std::string error = "Gyroscope Calibration Error: ";
    const std::string secondError = "Gyroscope_2 Calibration Error: ";
    const std::tuple<std::vector<double>, std::vector<int>, std::string> rows[] = {
        {{0.0, 300.0, 400.0, 2000.0}, {1, 4, 5, 10}, kNoFailure},
        {{-1.0, 299.9, 899.9, 899.9}, {0, 3, 9, 10}, kNoFailure},
        {{100.0, 100.0, 500.0, 600.0}, {}, error + "No data was sampled during stage 1"},
        {{0.0, 300.0, 399.0, 600.0}, {}, error + "No data was sampled during stage 2"},
        {{0.0, 300.0, 900.0, 2000.0}, {}, error + "Failed splitting data to segments"},
        {{900.0, 2000.0}, {}, error + "Failed splitting data to segments"},
        {{}, {}, secondError + "Failed splitting data to segments"}};
    const auto failure = [&](const std::vector<double>& times, const std::vector<int>& expected) {
        return failureOf([&] { EXPECT_EQ(segmentIndexes(*sensor, times), expected); });
    };
    EXPECT_EQ(failure({0.0, 1.0}, {}), secondError + "No data was available");
    for (int i = 0; i < 10; ++i) {
        sensor->bufferedData.push_back({100.0 * i, Vector(3)});
    }
    for (const auto& [times, indexes, text] : rows) {
        EXPECT_EQ(failure(times, indexes), text);
    }
    EXPECT_EQ(stageRange({1, 4, 5, 10, 12}, 1).count(), 5);
    EXPECT_EQ(stageRange({1, 4, 5, 10, 12}, 2).count(), 0);
    EXPECT_EQ(motionRange({1, 4, 5, 10, 12}, 1).count(), 2);
    EXPECT_EQ(motionRange({1, 4, 5, 10}, 1).count(), 0);
}

}  // namespace tavocal::test
