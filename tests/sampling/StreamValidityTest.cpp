#include "sampling/StreamValidity.h"

#include "sampling/FakeRunParts.h"
#include "sampling/SamplingState.h"

namespace tavocal::test {
TEST(StreamValidity, LastSamplesLieWithinATenthOfASecond) {
    constexpr double kNever = -1.0;
    // A run whose sensors stored samples at 0 ms, at the given times and at 9999 ms, and took as
    // many as `taken` into account.
    const auto verdict = [](const std::vector<double>& times, std::size_t taken = 2,
                            const std::string& indicators = "Accelerometer;") {
        SamplingState state;
        state.sensors = fakeSensors({"Gyroscope_2", "Accelerometer", "Magnetometer"});
        for (std::size_t i = 0; i < state.sensors.size(); ++i) {
            if (times[i] != kNever) {
                state.samples[state.sensors[i]] = {{0.0, {}}, {times[i], {}}, {9999.0, {}}};
            }
            state.sensors[i]->bufferedData.resize(taken);
        }
        const auto process = std::make_shared<FakeProcess>();
        process->indicators = indicators;
        state.process = process;
        state.allStagesDone = true;
        state.stages.stageDone(true);
        return failureOf([&] { checkDataStreamingValidity(state); });
    };
    const std::string early =
        "Data streaming rate was invalid. Not enough data points were sampled for ";
    const std::string none = "No data was sampled for ";
    EXPECT_EQ(verdict({4899.1, 5000.0, 5100.9}), kNoFailure);
    EXPECT_EQ(verdict({4899.0, 5000.0, 5101.0}), early + "Gyroscope_2, Magnetometer");
    EXPECT_EQ(verdict({1e300, 5000.0, 1e19}), early + "Gyroscope_2, Magnetometer");
    EXPECT_EQ(verdict({kNever, 5000.0, 5000.0}), early + "Gyroscope_2");
    EXPECT_EQ(verdict({5000.0, kNever, 5000.0}), none + "Accelerometer");
    const std::string two = "Gyroscope_2;Accelerometer;";
    // Of several indicators the last one is the measure.
    EXPECT_EQ(verdict({4950.0, 5000.0, 5100.0}, 2, two), kNoFailure);
    EXPECT_EQ(verdict({kNever, 5000.0, 5000.0}, 2, two), none + "Gyroscope_2");
    EXPECT_EQ(verdict({1.0, 1.0, 1.0}, 2, ""), "Error. stageIndicatorSensor is NULL");
    // The last sample is that of the sensor's own count, if there is one.
    EXPECT_EQ(verdict({1000.0, 5000.0, 9000.0}, 3), kNoFailure);
    EXPECT_EQ(verdict({5000.0, 5000.0, 5000.0}, 4), none + "Accelerometer");
    EXPECT_EQ(verdict({5000.0, 5000.0, 5000.0}, 0), none + "Accelerometer");
}

}  // namespace tavocal::test
