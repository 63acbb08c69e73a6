#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "simulator/Recording.h"

namespace tavocal::simulator {
namespace {

using Table = std::vector<Vec3>;

struct Mounting {
    std::string formFactor;
    std::string hinge;
    bool secondary;
};

const std::vector<Mounting> kAboutX = {
    {"2IN1", "BOTTOM", true}, {"MID", "BOTTOM", true}, {"MID", "TOP", true}};
const std::vector<Mounting> kAboutY = {
    {"2IN1", "TOP", true}, {"MID", "LEFT", true}, {"MID", "RIGHT", true}};

constexpr double kField = 500.0;
constexpr double kDip = 65.0;
const double c = kField * std::cos(kDip * kRadiansPerDegree);
const double s = kField * std::sin(kDip * kRadiansPerDegree);

// A device without errors and noise, held by a hand of stone.
Recording exactRun(Flow flow, const Mounting& mounting) {
    RecordingOptions options;
    options.flow = flow;
    options.formFactor = mounting.formFactor;
    options.hinge = mounting.hinge;
    options.secondary = mounting.secondary;
    options.perfect = true;
    options.fieldMg = kField;
    options.dipDegrees = kDip;
    options.noiseG = options.noiseDps = options.noiseMg = 0.0;
    options.jitterMs = 0.0;
    options.holdSeconds = 0.4;
    options.turnSeconds = 3.0;
    options.wholeMilliseconds = false;
    options.hand = {0.0, 0.0, 0.0};
    return record(options);
}

Vec3 valueOf(const Row& row) {
    return {row.values[0], row.values[1], row.values[2]};
}

const std::vector<Row>& rowsOf(const Recording& recording, SensorKind kind, bool secondary) {
    return recording.rows.at(displayName(kind, secondary));
}

Vec3 readingIn(const std::vector<Row>& rows, double timeMs) {
    for (const Row& row : rows) {
        if (row.time >= timeMs) {
            return valueOf(row);
        }
    }
    ADD_FAILURE() << "no sample after " << timeMs;
    return {};
}

// The readings in the middles of the stages.
Table positions(const Recording& recording, SensorKind kind, bool secondary) {
    Table result;
    for (const StillStage& stage : recording.truth.stages) {
        result.push_back(
            readingIn(rowsOf(recording, kind, secondary), 0.5 * (stage.begin + stage.end)));
    }
    return result;
}

// The sums of rate times time between the stages, in degrees.
Table turns(const Recording& recording, bool secondary) {
    const std::vector<Row>& rows = rowsOf(recording, SensorKind::Gyroscope, secondary);
    Table result(recording.truth.stages.size() - 1);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        for (std::size_t turn = 0; turn < result.size(); ++turn) {
            if (rows[i].time > recording.truth.stages[turn].end &&
                rows[i].time <= recording.truth.stages[turn + 1].begin) {
                result[turn] += valueOf(rows[i]) * ((rows[i].time - rows[i - 1].time) * 0.001);
            }
        }
    }
    return result;
}

void expectNear(const Table& actual, const Table& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_LT(norm(actual[i] - expected[i]), tolerance)
            << "row " << i << ": " << actual[i].x << " " << actual[i].y << " " << actual[i].z;
    }
}

// Rows 0, 2, 4 and 6, the positions of a full run without the stages behind its turns.
Table everySecond(const Table& all) {
    return {all[0], all[2], all[4], all[6]};
}

void expectFull(const Mounting& mounting, const Table& gravity, const Table& field,
                const Table& fullTurns) {
    SCOPED_TRACE(mounting.formFactor + " " + mounting.hinge);
    const Recording run = exactRun(Flow::Full, mounting);
    const Table up = positions(run, SensorKind::Accelerometer, mounting.secondary);
    const Table north = positions(run, SensorKind::Magnetometer, mounting.secondary);
    expectNear(everySecond(up), gravity, 1e-6);
    expectNear(everySecond(north), field, 1e-3);
    // A full turn leads back to where it began.
    for (const std::size_t turned : {1u, 3u, 5u}) {
        EXPECT_LT(norm(up[turned] - up[turned - 1]), 1e-6);
        EXPECT_LT(norm(north[turned] - north[turned - 1]), 1e-3);
    }
    const Table all = turns(run, mounting.secondary);
    expectNear({all[0], all[2], all[4]}, fullTurns, 0.01);
    const Recording short4 = exactRun(Flow::AccelerometerOnly, mounting);
    expectNear(positions(short4, SensorKind::Accelerometer, mounting.secondary), gravity, 1e-6);
}

void expectFourSteps(const Mounting& mounting, const Table& gravity, const Table& quarterTurns) {
    SCOPED_TRACE(mounting.formFactor + " " + mounting.hinge);
    const Recording run = exactRun(Flow::FourSteps, mounting);
    expectNear(positions(run, SensorKind::Accelerometer, mounting.secondary), gravity, 1e-6);
    expectNear(turns(run, mounting.secondary), quarterTurns, 0.01);
}

TEST(PositionsTest, FullAndAccelerometerOnlyMatchTheTables) {
    expectFull({"TABLET", "BOTTOM", false}, {{0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {0, -1, 0}},
               {{0, c, -s}, {0, -s, -c}, {-s, 0, -c}, {0, s, -c}},
               {{0, 0, 360}, {0, 360, 0}, {360, 0, 0}});
    for (const Mounting& mounting : kAboutX) {
        expectFull(mounting, {{0, 0, -1}, {0, -1, 0}, {1, 0, 0}, {0, 1, 0}},
                   {{0, -c, s}, {0, s, c}, {-s, 0, c}, {0, -s, c}},
                   {{0, 0, -360}, {0, -360, 0}, {360, 0, 0}});
    }
    for (const Mounting& mounting : kAboutY) {
        expectFull(mounting, {{0, 0, -1}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}},
                   {{0, c, s}, {0, -s, c}, {s, 0, c}, {0, s, c}},
                   {{0, 0, -360}, {0, 360, 0}, {-360, 0, 0}});
    }
    expectFull({"2IN1", "LEFT", true}, {{0, 0, -1}, {-1, 0, 0}, {0, -1, 0}, {1, 0, 0}},
               {{-c, 0, s}, {s, 0, c}, {0, s, c}, {-s, 0, c}},
               {{0, 0, -360}, {-360, 0, 0}, {0, -360, 0}});
    expectFull({"2IN1", "RIGHT", true}, {{0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}},
               {{c, 0, s}, {-s, 0, c}, {0, -s, c}, {s, 0, c}},
               {{0, 0, -360}, {360, 0, 0}, {0, 360, 0}});
}

TEST(PositionsTest, FourStepsMatchesTheTables) {
    expectFourSteps({"TABLET", "BOTTOM", false}, {{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                    {{0, 90, 0}, {0, 0, 90}, {-90, 0, 0}});
    for (const Mounting& mounting : kAboutX) {
        expectFourSteps(mounting, {{0, 0, -1}, {-1, 0, 0}, {0, -1, 0}, {0, 0, -1}},
                        {{0, -90, 0}, {0, 0, -90}, {-90, 0, 0}});
    }
    for (const Mounting& mounting : kAboutY) {
        expectFourSteps(mounting, {{0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {0, 0, -1}},
                        {{0, 90, 0}, {0, 0, -90}, {90, 0, 0}});
    }
    expectFourSteps({"2IN1", "LEFT", true}, {{0, 0, -1}, {0, 1, 0}, {-1, 0, 0}, {0, 0, -1}},
                    {{-90, 0, 0}, {0, 0, -90}, {0, 90, 0}});
    expectFourSteps({"2IN1", "RIGHT", true}, {{0, 0, -1}, {0, -1, 0}, {1, 0, 0}, {0, 0, -1}},
                    {{90, 0, 0}, {0, 0, -90}, {0, -90, 0}});
}

TEST(PositionsTest, MagAccuracyPointsNorthWestSouthEast) {
    const Recording run = exactRun(Flow::MagAccuracy, {"TABLET", "BOTTOM", false});
    expectNear(positions(run, SensorKind::Magnetometer, false),
               {{0, c, -s}, {c, 0, -s}, {0, -c, -s}, {-c, 0, -s}}, 1e-3);
    expectNear(positions(run, SensorKind::Accelerometer, false),
               {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}}, 1e-6);
    expectNear(turns(run, false), {{0, 0, 90}, {0, 0, 90}, {0, 0, 90}}, 0.01);
}

}  // namespace
}  // namespace tavocal::simulator
