#include "sensors/Accelerometer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/Failures.h"
#include "sensors/InertialBlock.h"
#include "support/FakeRun.h"

namespace tavocal::test {

namespace {

constexpr LUID kPrimary = {0x0073, 0, 0, 0, kStaticFlag};
constexpr LUID kSecondary = {0x0073, 0, 0, 1, kStaticFlag};

// A run of four still stages of one second at 100 Hz, one after the other.
class Bench {
  public:
    explicit Bench(FlowType flow, RunCommand command = RunCommand::Calibrate,
                   const LUID& luid = kPrimary)
        : run(flow, command), sensor(luid) {
        sensor.setManager(&run);
        sensor.buildExpectedValues();
    }

    // A stage that reads `value`, with noise of that size that cancels out.
    void addStage(const Vector& value, double noise = 0.0) {
        const double begin = 2000.0 * static_cast<double>(run.times.size()) / 2.0;
        run.times.insert(run.times.end(), {begin, begin + 1000.0});
        for (int i = 1; i <= 101; ++i) {
            const double sign = i % 2 == 0 ? noise : -noise;
            sensor.bufferedData.push_back({begin + 10.0 * i, value - sign});
        }
    }

    // The four positions as a sensor with this linear map and offset reads them.
    void addPositions(const Matrix& map, const Vector& offset, double noise = 0.0) {
        for (int p = 0; p < 4; ++p) {
            addStage(map * sensor.expectedRow(p) + offset, noise);
        }
    }

    std::string failure() {
        try {
            sensor.calibrate();
        } catch (const std::exception& exception) {
            return exception.what();
        }
        return {};
    }

    FakeRun run;
    Accelerometer sensor;
};

void expectNear(const Matrix& a, const Matrix& b, double tolerance) {
    for (int k = 0; k < 9; ++k) {
        EXPECT_NEAR(a[k / 3][k % 3], b[k / 3][k % 3], tolerance) << k;
    }
}

}  // namespace

TEST(AccelerometerTest, PerfectReadingsGiveTheIdentity) {
    Bench bench(FlowType::AccelerometerOnly);
    bench.addPositions(identity(3), Vector(3));
    EXPECT_EQ(bench.failure(), "");
    expectNear(bench.sensor.scaleMatrix, identity(3), 1e-12);
    EXPECT_EQ(bench.sensor.axisMapping, identity(3));
    EXPECT_NEAR(norm(bench.sensor.offsetVector), 0.0, 1e-12);
}

// Swapped and mirrored axes, cross-axis terms and an offset come apart into mapping, scale and
// offset again.
TEST(AccelerometerTest, FullSolveRecoversMountingScaleAndOffset) {
    Bench bench(FlowType::AccelerometerOnly);
    const Matrix scale(3, 3, {1.02, 0.01, -0.005, 0.008, 0.97, 0.012, -0.01, 0.003, 1.05});
    const Matrix mounting(3, 3, {0, -1, 0, 1, 0, 0, 0, 0, 1});
    const Vector offset{0.05, -0.12, 0.2};
    // inverse3 has no part in the class but to invert what it finds.
    Matrix inverseMap(3, 3);
    {
        const Matrix map = scale * mounting;
        const double d = determinant(map);
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                const int r1 = (c + 1) % 3, r2 = (c + 2) % 3, c1 = (r + 1) % 3, c2 = (r + 2) % 3;
                inverseMap[r][c] = (map[r1][c1] * map[r2][c2] - map[r1][c2] * map[r2][c1]) / d;
            }
        }
    }
    bench.addPositions(inverseMap, offset);
    EXPECT_EQ(bench.failure(), "");
    expectNear(bench.sensor.scaleMatrix, scale, 1e-9);
    EXPECT_EQ(bench.sensor.axisMapping, mounting);
    EXPECT_NEAR(norm(bench.sensor.offsetVector - offset), 0.0, 1e-9);
    const StaticBlockFields block = decodeStaticBlock(bench.sensor.calibrationToWrite);
    expectNear(block.scale, scale, 2.0 / 31000);
    EXPECT_NEAR(block.offset[1], -120000.0, 1.0);
}

TEST(AccelerometerTest, FourStepsFindsMountingDiagonalScaleAndOffset) {
    Bench bench(FlowType::FourSteps);
    const Matrix mounting(3, 3, {0, 0, 1, 0, 1, 0, -1, 0, 0});
    Matrix map = transpose(mounting);
    map = map * diagonal({1 / 1.1, 1 / 0.9, 1 / 1.05});
    bench.addPositions(map, {0.05, -0.02, 0.1});
    EXPECT_EQ(bench.failure(), "");
    EXPECT_EQ(bench.sensor.axisMapping, mounting);
    expectNear(bench.sensor.scaleMatrix, diagonal({1.1, 0.9, 1.05}), 1e-12);
    EXPECT_NEAR(norm(bench.sensor.offsetVector - Vector{0.05, -0.02, 0.1}), 0.0, 1e-12);
}

TEST(AccelerometerTest, GateNamesEverythingThatIsWrong) {
    Bench bench(FlowType::AccelerometerOnly);
    bench.addPositions(identity(3), {0.31, 0.0, 0.0}, 0.03);
    EXPECT_EQ(bench.failure(),
              "Calibration failed for sensor Accelerometer. Reason: Calculated offset is too "
              "high.\nCalculated white noise is too high.\n");
    EXPECT_TRUE(bench.sensor.calibrationToWrite.empty());
    EXPECT_TRUE(bench.sensor.calibrationFailed);
}

// A NaN makes every comparison false, so it must be looked for.
TEST(AccelerometerTest, NoResultThatIsNotFinitePasses) {
    Bench alike(FlowType::AccelerometerOnly);
    for (int i = 0; i < 4; ++i) {
        alike.addStage({0.0, 0.0, 1.0});
    }
    EXPECT_NE(alike.failure().find("Calculated calibration is not finite.\n"), std::string::npos);
    EXPECT_TRUE(alike.sensor.calibrationToWrite.empty());

    Bench infinite(FlowType::FourSteps);
    infinite.addPositions(identity(3), {std::numeric_limits<double>::infinity(), 0.0, 0.0});
    EXPECT_NE(infinite.failure(), "");
    EXPECT_TRUE(infinite.sensor.calibrationToWrite.empty());
}

TEST(AccelerometerTest, FourStepGateFailsOnTheExpectedError) {
    // A tilt in all positions keeps lengths and diagonal, and moves the readings off the table.
    const double angle = 0.5;
    const Matrix tilt(
        3, 3, {1, 0, 0, 0, std::cos(angle), -std::sin(angle), 0, std::sin(angle), std::cos(angle)});
    Bench bench(FlowType::FourSteps);
    bench.addPositions(tilt, Vector(3));
    EXPECT_NE(bench.failure().find("Expected error vs calibrated is too high.\n"),
              std::string::npos);
}

TEST(AccelerometerTest, SecondarySensorsNeedAFoldingDevice) {
    const char* const formFactors[] = {"2IN1", "KICKSTAND", "SWIVEL", "TABLET", "CLAMSHELL", "MID"};
    for (std::uint8_t formFactor = 0; formFactor < 6; ++formFactor) {
        for (std::uint8_t hinge = 0; hinge < 5; ++hinge) {
            FakeRun run(FlowType::Full);
            Accelerometer sensor(kSecondary);
            sensor.setManager(&run);
            sensor.formFactor = formFactor;
            sensor.hinge = hinge;
            const bool folds = formFactor == 0 || formFactor == 5;
            SCOPED_TRACE(formFactors[formFactor] + std::to_string(hinge));
            try {
                sensor.buildExpectedValues();
                EXPECT_TRUE(folds && hinge < 4);
                // In the first position the secondary half lies face down.
                EXPECT_EQ(sensor.expectedRow(0), (Vector{0.0, 0.0, -1.0}));
            } catch (const CalibrationException& exception) {
                EXPECT_STREQ(exception.what(), folds ? "Undefined hinge configuration encountered."
                                                     : "Undefined form factor encountered.");
            }
        }
    }
}

TEST(AccelerometerTest, OriginalAxisMappingIsComparedWhenAskedFor) {
    Bench bench(FlowType::FourSteps);
    bench.sensor.setCheckVsOriginalAxis(true);
    bench.addPositions(identity(3), Vector(3));
    EXPECT_EQ(bench.failure(),
              "Calibration failed for all sensors. Reason: No original axis mapping to compare "
              "with.\n");

    Bench turned(FlowType::FourSteps);
    turned.sensor.setCheckVsOriginalAxis(true);
    turned.sensor.setCalibrationData(turned.sensor.prependFormat(turned.sensor.getStaticDefault()));
    turned.addPositions(Matrix(3, 3, {0, 1, 0, -1, 0, 0, 0, 0, 1}), Vector(3));
    EXPECT_EQ(turned.failure(),
              "Calibration failed for all sensors. Reason: wrong movement detected");

    Bench same(FlowType::FourSteps);
    same.sensor.setCheckVsOriginalAxis(true);
    same.sensor.setCalibrationData(same.sensor.prependFormat(same.sensor.getStaticDefault()));
    same.addPositions(identity(3), Vector(3));
    EXPECT_EQ(same.failure(), "");
}

class FaceUpTest : public ::testing::Test {
  protected:
    FaceUpTest() : bench(FlowType::Minimal) {
        bench.sensor.setCalibrationData(
            bench.sensor.prependFormat(bench.sensor.getStaticDefault()));
        bench.sensor.calcReverseSdt();
    }

    std::string failureFor(const Vector& reading, double noise = 0.0) {
        for (int i = 0; i < 100; ++i) {
            bench.sensor.dataRecieved({10.0 * i, reading - (i % 2 == 0 ? noise : -noise)});
        }
        return bench.failure();
    }

    Bench bench;
};

TEST_F(FaceUpTest, CorrectsOnlyTheOffsetOfTheBlock) {
    const CalibrationBlock before = bench.sensor.originalCalibration;
    EXPECT_EQ(failureFor({0.25, -0.125, 1.0625}), "");
    CalibrationBlock expected = before;
    storeOffset(expected, {250000, -125000, 62500});
    for (std::size_t i = 0; i < expected.size(); ++i) {
        // The way through m/s² may cost the last millionth.
        EXPECT_NEAR(bench.sensor.calibrationToWrite[i], expected[i], i == 2 || i == 6 || i == 10);
    }
    EXPECT_TRUE(bench.sensor.bufferedData.empty());
}

TEST_F(FaceUpTest, FaceDownGetsTheHintOnTheMapping) {
    EXPECT_EQ(failureFor({0.0, 0.0, -1.0}),
              "Calibration failed for sensor Accelerometer. Reason: Calculated offset is too high. "
              "Check that axis mapping is correct. Note That per-model calibration is a "
              "prerequisite for running a Face Up calibration.\n");
}

TEST_F(FaceUpTest, ShakenDeviceAndNoSamplesAreRefused) {
    EXPECT_EQ(failureFor({0.0, 0.0, 1.0}, 0.06),
              "Calibration failed for sensor Accelerometer. Reason: Data standard deviation is too "
              "high. Device should be motionless.\n");
    Bench empty(FlowType::Minimal);
    empty.sensor.setCalibrationData(empty.sensor.prependFormat(empty.sensor.getStaticDefault()));
    empty.sensor.calcReverseSdt();
    EXPECT_NE(empty.failure().find("Calculated calibration is not finite.\n"), std::string::npos);
    EXPECT_EQ(Bench(FlowType::Minimal).failure(), "Math Exception in Accelerometer");
}

// ---- Tests of a stored calibration ----

class AccelerometerTestRun : public ::testing::Test {
  protected:
    using Failures = std::vector<std::pair<int, std::string>>;

    bool passes(const Matrix& map, const Vector& offset, double noise) {
        bench.addPositions(map, offset, noise);
        return bench.sensor.testCalibration();
    }

    Bench bench{FlowType::FourSteps, RunCommand::TestCalibration};
};

TEST_F(AccelerometerTestRun, GoodDevicePasses) {
    EXPECT_TRUE(passes(identity(3), {0.05, 0.05, -0.05}, 0.01));
    EXPECT_TRUE(bench.run.failures.empty());
}

TEST_F(AccelerometerTestRun, OffsetAndNoiseNameTheCalibration) {
    EXPECT_FALSE(passes(identity(3), {0.0, 0.0, 0.11}, 0.0));
    EXPECT_EQ(bench.run.failures, (Failures{{0, "Accelerometer"}}));
}

TEST_F(AccelerometerTestRun, WrongAxisNamesTheMapping) {
    EXPECT_FALSE(passes(Matrix(3, 3, {0, 1, 0, 1, 0, 0, 0, 0, 1}), Vector(3), 0.0));
    EXPECT_EQ(bench.run.failures, (Failures{{1, "Accelerometer"}}));
}

// The first and the last stage stand on the table, those between are held by hand.
TEST_F(AccelerometerTestRun, HandHeldStagesMayBeThreeTimesAsNoisy) {
    bench.addStage({0.0, 0.0, 1.0}, 0.03);
    bench.addStage({-1.0, 0.0, 0.0}, 0.11);
    bench.addStage({0.0, 1.0, 0.0}, 0.11);
    bench.addStage({0.0, 0.0, 1.0}, 0.05);
    EXPECT_FALSE(bench.sensor.testCalibration());
    EXPECT_EQ(bench.run.failures, (Failures{{0, "Accelerometer"}}));
    EXPECT_GT(bench.sensor.stageStds[1][0], 0.1);
}

TEST_F(AccelerometerTestRun, ReadingThatIsNoNumberFails) {
    bench.addPositions(identity(3), Vector(3));
    bench.sensor.bufferedData[150].values[1] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(bench.sensor.testCalibration());
}

TEST_F(AccelerometerTestRun, SpikeOutAndBackCountsOnce) {
    bench.addPositions(identity(3), Vector(3));
    for (const std::size_t at : {10U, 30U, 50U}) {
        bench.sensor.bufferedData[at].values[0] += 0.6;
    }
    EXPECT_EQ(bench.sensor.countSpikes(0, 0.5), 3);
    EXPECT_EQ(bench.sensor.countSpikes(1, 0.5), 0);
}

TEST(InertialStagesTest, SampleOnABoundaryLiesBeforeIt) {
    Bench bench(FlowType::FourSteps);
    for (int i = 0; i < 10; ++i) {
        bench.sensor.bufferedData.push_back({100.0 * i, Vector(3)});
    }
    bench.run.times = {0.0, 300.0, 400.0, 2000.0};
    EXPECT_EQ(bench.sensor.findIndex(), (std::vector<int>{1, 4, 5, 10}));
    bench.run.times = {0.0, 300.0, 300.0, 600.0};
    EXPECT_THROW(bench.sensor.findIndex(), CalibrationException);
    bench.run.times = {0.0, 300.0, 1000.0, 2000.0};
    EXPECT_THROW(bench.sensor.findIndex(), CalibrationException);
    bench.sensor.bufferedData.clear();
    EXPECT_THROW(bench.sensor.findIndex(), CalibrationException);
}

}  // namespace tavocal::test
