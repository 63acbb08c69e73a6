#include "sensors/inertial/Stillness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "numerics/NumericsTesting.h"
#include "numerics/Statistics.h"
#include "support/NamedSensor.h"

namespace tavocal::test {
namespace {

using Samples = std::vector<Sample>;

// Samples every 10 ms from 0 ms on.
struct Stream : std::vector<Sample> {
    // Goes on with values that alternate between the level and its negative.
    Stream wave(double level, double until, int axis = 0) {
        for (double time = 10.0 * static_cast<double>(size()); time <= until; time += 10.0) {
            push_back({time, {0.0, 0.0, 0.0}});
            back().values[axis] = size() % 2 == 0 ? level : -level;
        }
        return *this;
    }
};

TEST(Stillness, EachClassHasItsLimits) {
    const std::tuple<std::string, double, double, double, int> rows[] = {
        {"Accelerometer", 0.015, 0.08, 0.0005, 0},
        {"Gyroscope", 5, 15, 0.1, 1},
        {"Magnetometer", 30, 100, 1, 2}};
    for (const auto& [name, deviation, range, floor, axis] : rows) {
        const auto isStill = [&](const Stream& stream) {
            const auto sensor = makeNamedSensor(name);
            sensor->bufferedData = stream;
            return sensor->isStill(false);
        };
        EXPECT_FALSE(isStill({}));
        EXPECT_TRUE(isStill(Stream().wave(0.999 * deviation, 1000, axis))) << name;
        EXPECT_FALSE(isStill(Stream().wave(1.001 * deviation, 1000, axis))) << name;
        EXPECT_TRUE(isStill(Stream().wave(0, 500).wave(0.999 * range, 510, axis))) << name;
        EXPECT_FALSE(isStill(Stream().wave(0, 500).wave(1.001 * range, 510, axis))) << name;
        EXPECT_EQ(makeNamedSensor(name)->stillness.stillFloor, floor);
    }
}

// The deviation of a wave of as many samples up as down is its level, its range twice that.
TEST(Stillness, FirstStageTightensTheLimitsAndNothingRaisesThem) {
    StillnessLimits limits{1000.0, 0.5, 4.0, 100.0};
    const auto isStill = [&limits](const Stream& stream, bool firstStage) {
        Stillness stillness(stream, limits);
        const bool still = stillness.isStill(firstStage);
        limits = stillness;
        return still;
    };
    for (const auto& [level, firstStage, still, stdLimit, rangeLimit] :
         {std::tuple(4.0, false, true, 4.0, 100.0), std::tuple(2.0, true, true, 3.0, 6.0),
          std::tuple(1.0, true, true, 1.5, 3.0), std::tuple(1.5, false, true, 1.5, 3.0),
          std::tuple(1.75, true, false, 1.5, 3.0), std::tuple(0.25, true, true, 0.5, 0.75)}) {
        EXPECT_EQ(isStill(Stream().wave(level, 990), firstStage), still) << level;
        EXPECT_EQ(limits.stillStdLimit, stdLimit) << level;
        EXPECT_EQ(limits.stillRangeLimit, rangeLimit) << level;
    }
    // Only the last window counts, with the sample at its begin.
    EXPECT_FALSE(isStill(Stream().wave(0, 50).wave(9, 60).wave(0, 1060), false));
    EXPECT_TRUE(isStill(Stream().wave(0, 50).wave(9, 60).wave(0, 1070), false));
}

// The window from 1000 to 2000 ms is the measure: its range is 4, its deviation 1.038.
TEST(Stillness, ExtensionCountsWindowsThatStayAsQuiet) {
    const auto extension = [](const std::vector<Sample>& samples) {
        return Stillness(samples, {1000.0}).stillExtension(1000.0);
    };
    Stream measured = Stream().wave(1, 1500).wave(3, 1510);
    EXPECT_EQ(extension(Stream().wave(1, 1100)), 0.0);
    EXPECT_EQ(extension(Stream(measured).wave(1, 2000)), 900.0);
    EXPECT_EQ(extension(Stream(measured).wave(1, 2010)), 1000.0);
    measured = measured.wave(1, 2340);
    EXPECT_EQ(extension(Stream(measured).wave(5, 2350).wave(1, 5000)), 3900.0);
    EXPECT_EQ(extension(Stream(measured).wave(5.01, 2350).wave(1, 5000)), 300.0);
    EXPECT_EQ(extension(Stream(measured).wave(1.55, 5000)), 3900.0);
    EXPECT_EQ(extension(Stream(measured).wave(1.56, 5000)), 1300.0);
    // Fewer than three samples are no measure.
    const std::vector<Sample> sparse = {{0, {0, 0, 0}}, {500, {0, 0, 0}}, {1000, {0, 0, 0}}};
    EXPECT_EQ(Stillness(sparse, {999.0}).stillExtension(0.0), 0.0);
    EXPECT_EQ(Stillness(sparse, {1000.0}).stillExtension(0.0), 900.0);
}

// ---- The same from scratch ----

// Walks from the newest sample to the oldest.
int newestNotAbove(const Samples& samples, double time) {
    int i = static_cast<int>(samples.size()) - 1;
    while (i >= 0 && !(samples[static_cast<std::size_t>(i)].timestamp <= time)) {
        --i;
    }
    return i;
}

// The range and the deviation of a window.
std::pair<double, double> plainSpread(const Samples& samples, double t, double window) {
    const int first = std::max(newestNotAbove(samples, t), 0);
    const int last = newestNotAbove(samples, t + window);
    double range = 0.0;
    double deviation = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        std::vector<double> values;
        for (int i = first; i <= last; ++i) {
            values.push_back(samples[static_cast<std::size_t>(i)].values[axis]);
        }
        const auto [smallest, largest] = std::minmax_element(values.begin(), values.end());
        range = std::max(range, *largest - *smallest);
        deviation = std::max(deviation, std::sqrt(variance(values)));
    }
    return {std::max(range, 1e-300), std::max(deviation, 1e-300)};
}

// Step by step over all the time that there is.
double plainExtension(const Samples& samples, double window, double t) {
    if (newestNotAbove(samples, t + window) - std::max(newestNotAbove(samples, t), 0) < 2) {
        return 0.0;
    }
    const auto [baseRange, baseDeviation] = plainSpread(samples, t, window);
    int n = 1;
    while (samples.back().timestamp > t + 100.0 * n) {
        const auto [range, deviation] = plainSpread(samples, t + 100.0 * n, window);
        if (range > 1.5 * baseRange || deviation > 1.5 * baseDeviation) {
            break;
        }
        ++n;
    }
    return 100.0 * (n - 1);
}

bool plainStill(const Samples& samples, StillnessLimits& limits) {
    const auto [range, deviation] =
        plainSpread(samples, samples.back().timestamp - limits.stillWindow, limits.stillWindow);
    limits.stillRangeLimit = std::min(limits.stillRangeLimit, 1.5 * range);
    limits.stillStdLimit = std::min(limits.stillStdLimit, 1.5 * deviation);
    return deviation <= limits.stillStdLimit && range <= limits.stillRangeLimit;
}

// The clock goes on by 0 to 40 ms, jumps ahead by up to half a minute, stands, and in one stream of
// four is set back.
Samples strayingSamples(RandomNumbers& random, bool setBack) {
    Samples samples;
    double time = random.between(0.0, 1e6);
    for (int i = 0; i < 150; ++i) {
        const double event = random.between(0.0, 1.0);
        if (event < 0.03) {
            time += std::pow(10.0, random.between(0.0, 4.5));
        } else if (event < 0.04 && setBack) {
            time = std::max(0.0, time - random.between(0.0, 5000.0));
        } else if (event < 0.9) {
            time += random.between(0.0, 40.0);
        }
        samples.push_back({time, random.vector(3, random.between(1.0, 1.2))});
    }
    return samples;
}

TEST(Stillness, AnswersAsIfItLookedAtAllTimeAndAllSamples) {
    forEachSeed([](RandomNumbers& random) {
        for (int round = 0; round < 8; ++round) {
            const Samples samples = strayingSamples(random, round % 4 == 0);
            Samples grown;
            StillnessLimits plain{random.between(0.0, 1000.0), 0.0, 2.0, 3.0};
            Stillness stillness(grown, plain);
            for (const Sample& sample : samples) {
                grown.push_back(sample);
                ASSERT_EQ(stillness.isStill(true), plainStill(grown, plain)) << grown.size();
            }
            for (std::size_t i = 0; i < samples.size(); i += 40) {
                const double t = samples[i].timestamp;
                ASSERT_EQ(stillness.stillExtension(t),
                          plainExtension(samples, plain.stillWindow, t))
                    << round << " " << i;
            }
        }
    });
}

// From boot time to Unix time, and to the end of what a firmware can count.
TEST(Stillness, ExtensionOverAClockThatJumpsFarEndsAtOnce) {
    const auto extension = [](const Samples& samples) {
        return Stillness(samples, {1000.0}).stillExtension(0.0);
    };
    for (const double jump : {4294967295.0, 1.7e12, 1e15, 1.8446744073709552e16}) {
        Samples samples = Stream().wave(1, 2000);
        samples.push_back({jump, {1.0, 0.0, 0.0}});
        EXPECT_EQ(extension(samples), 100.0 * (std::ceil(jump / 100.0) - 1.0));
        // The first window that reaches the samples behind the jump is too loud.
        samples.insert(samples.end(), 2, {jump + 500.0, {-9.0, 0.0, 0.0}});
        EXPECT_EQ(extension(samples), 100.0 * (std::ceil((jump - 500.0) / 100.0) - 1.0)) << jump;
    }
    for (const double time : {1e30, 1e308, kInfinity}) {
        Samples samples = Stream().wave(1, 2000);
        samples.push_back({time, {1.0, 0.0, 0.0}});
        EXPECT_GT(extension(samples), 1e17);
    }
}

}  // namespace
}  // namespace tavocal::test
