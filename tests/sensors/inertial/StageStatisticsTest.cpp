#include "sensors/inertial/StageStatistics.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

namespace {

std::vector<Sample> samplesOf(const std::vector<double>& values) {
    std::vector<Sample> samples;
    for (const double value : values) {
        samples.push_back({10.0 * static_cast<double>(samples.size()), {1.0, value, -1.0}});
    }
    return samples;
}

}  // namespace

TEST(StageStatisticsTest, OneSampleOutAndBackIsOneSpike) {
    const std::vector<Sample> samples =
        samplesOf({0.0, 5.1, 0.0, 5.0, 10.1, 10.1, 0.0, 9.0, 0.0, 0.0});
    for (const auto& [range, spikes] :
         {std::pair(StageRange{0, 8}, 3), {{0, 2}, 1}, {{0, 1}, 0}, {{1, 9}, 4}, {{3, 3}, 0}}) {
        EXPECT_EQ(spikesIn(samples, range, 5.05), spikes) << range.first << " " << range.end;
    }
}

// A sum of noises tells what one of them was.
TEST(StageStatisticsTest, NoiseThatRoundingLosesIsNoneThatASampleSpoils) {
    const Vector lost = noiseOfAxes(samplesOf({0.1, 0.1, 0.1}));
    const Vector spoilt = noiseOfAxes(samplesOf({0.1, kNotANumber, 0.1}));
    EXPECT_EQ(lost, (Vector{0.0, kLostNoise, 0.0}));
    EXPECT_TRUE(std::isnan(spoilt[1]));
    EXPECT_EQ(noiseOfAxes(samplesOf({1.0, 5.0}))[1] + lost[1], kLostNoise);
    EXPECT_TRUE(std::isnan(lost[1] + spoilt[1]));
    EXPECT_TRUE(std::isnan(lost[1] + noiseOfAxes(samplesOf({kInfinity, 0.0}))[1]));
}

}  // namespace tavocal::test
