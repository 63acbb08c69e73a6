#include <gtest/gtest.h>

#include <cmath>

#include "simulator/Recording.h"

namespace tavocal::simulator {
namespace {

using Table = std::vector<Vec3>;

const double c = 500.0 * std::cos(65.0 * kRadiansPerDegree);
const double s = 500.0 * std::sin(65.0 * kRadiansPerDegree);

// What the device's own axes read in each still position of a flow, and the turns between them.
const struct {
    Flow flow;
    Table gravity;
    Table field;
    Table turns;
} kFlows[] = {
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
const struct {
    const char* formFactor;
    const char* hinge;
    bool secondary;
    Vec3 x;
    Vec3 y;
} kMountings[] = {
    {"2IN1", "LEFT", false, {1, 0, 0}, {0, 1, 0}},  {"2IN1", "BOTTOM", true, {1, 0, 0}, {0, -1, 0}},
    {"MID", "BOTTOM", true, {1, 0, 0}, {0, -1, 0}}, {"MID", "TOP", true, {1, 0, 0}, {0, -1, 0}},
    {"2IN1", "TOP", true, {-1, 0, 0}, {0, 1, 0}},   {"MID", "LEFT", true, {-1, 0, 0}, {0, 1, 0}},
    {"MID", "RIGHT", true, {-1, 0, 0}, {0, 1, 0}},  {"2IN1", "LEFT", true, {0, -1, 0}, {-1, 0, 0}},
    {"2IN1", "RIGHT", true, {0, 1, 0}, {1, 0, 0}}};

// A device without errors and noise, held by a hand of stone.
RecordingOptions exactRun() {
    RecordingOptions options;
    options.perfect = true;
    options.fieldMg = 500.0;
    options.dipDegrees = 65.0;
    options.noiseG = options.noiseDps = options.noiseMg = 0.0;
    options.jitterMs = 0.0;
    options.holdSeconds = 0.4;
    options.turnSeconds = 3.0;
    options.wholeMilliseconds = false;
    options.hand = {0.0, 0.0, 0.0};
    return options;
}

// The readings in the middles of the stages.
Table positions(const Recording& recording, const std::string& sensor) {
    Table result;
    for (const StillStage& stage : recording.truth.stages) {
        for (const Row& row : recording.rows.at(sensor)) {
            if (row.time >= 0.5 * (stage.begin + stage.end)) {
                result.push_back({row.values[0], row.values[1], row.values[2]});
                break;
            }
        }
    }
    return result;
}

// The sums of rate times time between the stages, in degrees.
Table turns(const Recording& recording, const std::string& sensor) {
    const std::vector<StillStage>& stages = recording.truth.stages;
    Table result(stages.size() - 1);
    for (const Row& row : recording.rows.at(sensor)) {
        for (std::size_t turn = 0; turn < result.size(); ++turn) {
            if (row.time > stages[turn].end && row.time <= stages[turn + 1].begin) {
                result[turn] += Vec3{row.values[0], row.values[1], row.values[2]} * 0.01;
            }
        }
    }
    return result;
}

TEST(PositionsTest, EachHingeReadsItsFrameOfTheGeometry) {
    for (const auto& mounting : kMountings) {
        for (const auto& expected : kFlows) {
            RecordingOptions options = exactRun();
            options.flow = expected.flow;
            options.formFactor = mounting.formFactor;
            options.hinge = mounting.hinge;
            options.secondary = mounting.secondary;
            const Recording run = record(options);
            const Vec3 z = cross(mounting.x, mounting.y);
            const auto expectNear = [&](const Table& read, const Table& device, double tolerance) {
                ASSERT_EQ(read.size(), device.size());
                for (std::size_t i = 0; i < device.size(); ++i) {
                    const Vec3 turned =
                        mounting.x * device[i].x + mounting.y * device[i].y + z * device[i].z;
                    EXPECT_LT(norm(read[i] - turned), tolerance)
                        << mounting.formFactor << mounting.hinge << flowName(expected.flow) << i;
                }
            };
            const auto nameOf = [&](SensorKind kind) {
                return displayName(kind, mounting.secondary);
            };
            expectNear(positions(run, nameOf(SensorKind::Accelerometer)), expected.gravity, 1e-6);
            expectNear(positions(run, nameOf(SensorKind::Magnetometer)), expected.field, 1e-3);
            expectNear(turns(run, nameOf(SensorKind::Gyroscope)), expected.turns, 0.01);
        }
    }
}

}  // namespace
}  // namespace tavocal::simulator
