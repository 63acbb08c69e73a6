#include "sensors/Stillness.h"

#include <gtest/gtest.h>

#include "support/MotionReplay.h"

namespace tavocal::test {
namespace {

// A stream of one axis, with a sample every 10 ms from 0 ms on.
class Stream {
  public:
    explicit Stream(int whichAxis = 0) : axis(whichAxis) {}

    // Values that alternate between +level and -level.
    Stream& wave(double level, double until) {
        while (10.0 * static_cast<double>(samples.size()) <= until) {
            add(samples.size() % 2 == 0 ? level : -level);
        }
        return *this;
    }
    Stream& spike(double height) { return add(height); }

    std::vector<Sample> samples;

  private:
    Stream& add(double value) {
        samples.push_back({10.0 * static_cast<double>(samples.size()), {0.0, 0.0, 0.0}});
        samples.back().values[axis] = value;
        return *this;
    }

    int axis;
};

// The limits of the classes, and that every axis counts, in the first stage and later.
TEST(Stillness, EachClassHasItsLimits) {
    const struct {
        const char* sensor;
        double deviation, range, floor;
    } rows[] = {{"Accelerometer", 0.015, 0.08, 0.0005},
                {"Gyroscope", 5.0, 15.0, 0.1},
                {"Magnetometer", 30.0, 100.0, 1.0}};
    for (const auto& row : rows) {
        for (const bool firstStage : {true, false}) {
            const auto isStill = [&](const Stream& stream) {
                const auto sensor = makeNamedSensor(row.sensor);
                sensor->bufferedData = stream.samples;
                return sensor->isStill(firstStage);
            };
            for (int axis = 0; axis < 3; ++axis) {
                SCOPED_TRACE(row.sensor + std::to_string(axis));
                EXPECT_TRUE(isStill(Stream(axis).wave(0.999 * row.deviation, 1000)));
                EXPECT_FALSE(isStill(Stream(axis).wave(1.001 * row.deviation, 1000)));
                EXPECT_TRUE(isStill(Stream(axis).wave(0, 500).spike(0.999 * row.range)));
                EXPECT_FALSE(isStill(Stream(axis).wave(0, 500).spike(1.001 * row.range)));
            }
        }
        const auto quiet = makeNamedSensor(row.sensor);
        quiet->bufferedData = Stream().wave(0, 1000).samples;
        EXPECT_TRUE(quiet->isStill(true));
        EXPECT_EQ(quiet->stillness.stillStdLimit, row.floor);
        EXPECT_EQ(quiet->stillness.stillRangeLimit, row.floor);
    }
    EXPECT_FALSE(makeNamedSensor("Accelerometer")->isStill(true));
}

// The deviation of a wave of as many samples up as down is its level, its range twice that.
TEST(Stillness, FirstStageTightensTheLimitsAndNothingRaisesThem) {
    StillnessLimits limits{1000.0, 0.5, 4.0, 100.0};
    const auto after = [&](double level, bool firstStage) {
        const bool still = isStill(Stream().wave(level, 990).samples, limits, firstStage);
        return std::vector<double>{still ? 1.0 : 0.0, limits.stillStdLimit, limits.stillRangeLimit};
    };
    using Result = std::vector<double>;
    EXPECT_EQ(after(1.0, false), (Result{1, 4.0, 100.0}));
    EXPECT_EQ(after(2.0, true), (Result{1, 3.0, 6.0}));
    EXPECT_EQ(after(1.0, true), (Result{1, 1.5, 3.0}));
    EXPECT_EQ(after(1.5, false), (Result{1, 1.5, 3.0}));
    EXPECT_EQ(after(1.75, true), (Result{0, 1.5, 3.0}));
    EXPECT_EQ(after(0.25, true), (Result{1, 0.5, 0.75}));
}

TEST(Stillness, OnlyTheLastWindowCounts) {
    const auto isStillAfterSpike = [](double silence) {
        StillnessLimits limits{1000.0, 0.0, 100.0, 1.0};
        const auto stream = Stream().wave(0, 50).spike(9).wave(0, 60 + silence);
        return isStill(stream.samples, limits, false);
    };
    EXPECT_FALSE(isStillAfterSpike(1000));
    EXPECT_TRUE(isStillAfterSpike(1010));
}

// The window from 1000 to 2000 ms is the measure: the range is 4, the deviation 1.038.
TEST(Stillness, ExtensionCountsWindowsThatStayAsQuiet) {
    const auto measured = [](double until) {
        return Stream().wave(1, 1500).spike(3).wave(1, until);
    };
    const auto extension = [](const Stream& stream) {
        return stillExtension(stream.samples, 1000.0, 1000.0);
    };
    EXPECT_EQ(extension(Stream().wave(1, 1100)), 0.0);
    EXPECT_EQ(extension(measured(2000)), 900.0);
    EXPECT_EQ(extension(measured(2010)), 1000.0);
    EXPECT_EQ(extension(measured(2340).spike(5).wave(1, 5000)), 3900.0);
    EXPECT_EQ(extension(measured(2340).spike(5.01).wave(1, 5000)), 300.0);
    EXPECT_EQ(extension(measured(2350).wave(1.55, 5000)), 3900.0);
    EXPECT_EQ(extension(measured(2350).wave(1.6, 5000)), 1200.0);
    // Fewer than three samples are no measure.
    const std::vector<Sample> sparse = {{0, {0, 0, 0}}, {500, {0, 0, 0}}, {1000, {0, 0, 0}}};
    EXPECT_EQ(stillExtension(sparse, 999.0, 0.0), 0.0);
    EXPECT_EQ(stillExtension(sparse, 1000.0, 0.0), 900.0);
}

}  // namespace
}  // namespace tavocal::test
