#include <gtest/gtest.h>

#include <cmath>

#include "simulator/recording/Recording.h"

namespace tavocal::simulator {

using Table = std::vector<Vec3>;

// The usual field: 480 mG, 60 degrees down.
const double c = 480.0 * 0.5;
const double s = 480.0 * std::sqrt(0.75);

// What the device's own axes read in each still position of a flow, and the turns between them.
const std::tuple<Flow, Table, Table, Table> kFlows[] = {
    {Flow::Full,
     {{0, 0, 1}, {0, 0, 1}, {0, 1, 0}, {0, 1, 0}, {1, 0, 0}, {1, 0, 0}, {0, -1, 0}},
     {{0, c, -s}, {0, c, -s}, {0, -s, -c}, {0, -s, -c}, {-s, 0, -c}, {-s, 0, -c}, {0, s, -c}},
     {{0, 0, 360}, {90, 0, 0}, {0, 360, 0}, {0, 0, 90}, {360, 0, 0}, {0, 0, 90}}},
    {Flow::AccelerometerOnly,
     {{0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {0, -1, 0}},
     {{0, c, -s}, {0, -s, -c}, {-s, 0, -c}, {0, s, -c}},
     {{90, 0, 0}, {0, 0, 90}, {0, 0, 90}}},
    {Flow::FourSteps,
     {{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
     {{0, c, -s}, {s, c, 0}, {c, -s, 0}, {c, 0, -s}},
     {{0, 90, 0}, {0, 0, 90}, {-90, 0, 0}}},
    {Flow::MagAccuracy,
     {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}},
     {{0, c, -s}, {c, 0, -s}, {0, -c, -s}, {-c, 0, -s}},
     {{0, 0, 90}, {0, 0, 90}, {0, 0, 90}}}};

// What the frame of a sensor's readings makes of the device's X and Y; Z follows.
const std::tuple<const char*, const char*, bool, Vec3, Vec3> kMountings[] = {
    {"2IN1", "LEFT", false, {1, 0, 0}, {0, 1, 0}},  {"2IN1", "BOTTOM", true, {1, 0, 0}, {0, -1, 0}},
    {"MID", "BOTTOM", true, {1, 0, 0}, {0, -1, 0}}, {"MID", "TOP", true, {1, 0, 0}, {0, -1, 0}},
    {"2IN1", "TOP", true, {-1, 0, 0}, {0, 1, 0}},   {"MID", "LEFT", true, {-1, 0, 0}, {0, 1, 0}},
    {"MID", "RIGHT", true, {-1, 0, 0}, {0, 1, 0}},  {"2IN1", "LEFT", true, {0, -1, 0}, {-1, 0, 0}},
    {"2IN1", "RIGHT", true, {0, 1, 0}, {1, 0, 0}}};

// The readings in the middles of the stages, and the sums of rate times time between them in
// degrees.
static Table readings(const Recording& recording, const std::string& sensor, bool betweenStages) {
    const auto& stages = recording.truth.stages;
    Table result(stages.size() - (betweenStages ? 1 : 0));
    for (const Row& row : recording.rows.at(sensor)) {
        const Vec3 value{row.values[0], row.values[1], row.values[2]};
        for (std::size_t i = 0; i < result.size(); ++i) {
            if (betweenStages && row.time > stages[i].end && row.time <= stages[i + 1].begin) {
                result[i] += value * 0.01;
            } else if (!betweenStages && 2.0 * row.time <= stages[i].begin + stages[i].end) {
                result[i] = value;
            }
        }
    }
    return result;
}

TEST(PositionsTest, EachHingeReadsItsFrameOfTheGeometry) {
    // A device without errors and noise, held by a hand of stone.
    RecordingOptions options;
    options.perfect = true;
    options.noiseG = options.noiseDps = options.noiseMg = options.jitterMs = 0.0;
    options.holdSeconds = 0.2;
    options.turnSeconds = 1.5;
    options.tiltSeconds = 0.9;
    options.hand = {0.0, 0.0, 0.0};
    for (const auto& [formFactor, hinge, secondary, x, y] : kMountings) {
        options.formFactor = formFactor;
        options.hinge = hinge;
        options.secondary = secondary;
        const auto expectNear = [&, x = x, y = y](const Table& read, const Table& device,
                                                  double tolerance) {
            ASSERT_EQ(read.size(), device.size());
            for (std::size_t i = 0; i < device.size(); ++i) {
                const Vec3& d = device[i];
                EXPECT_LT(norm(read[i] - (x * d.x + y * d.y + cross(x, y) * d.z)), tolerance)
                    << options.formFactor << options.hinge << flowName(options.flow) << i;
            }
        };
        const std::string second = secondary ? "_2" : "";
        for (const auto& [flow, gravity, field, turns] : kFlows) {
            options.flow = flow;
            const Recording run = record(options);
            expectNear(readings(run, "Accelerometer" + second, false), gravity, 1e-6);
            expectNear(readings(run, "Magnetometer" + second, false), field, 1e-3);
            expectNear(readings(run, "Gyroscope" + second, true), turns, 0.01);
        }
    }
}

}  // namespace tavocal::simulator
