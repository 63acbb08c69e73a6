#include "sensors/Magnetometer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/FormFactor.h"
#include "numerics/NumericsTesting.h"
#include "sensors/Ellipsoid.h"
#include "sensors/SensorTypes.h"
#include "support/FakeRun.h"
#include "support/MotionReplay.h"

namespace tavocal::test {
namespace {

using test::FakeRun;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.141592653589793;
constexpr double kDegree = kPi / 180.0;
constexpr LUID kPrimary = {kMagnetometerType, 0, 0, 0, kStaticFlag};
constexpr LUID kSecondary = {kMagnetometerType, 0, 0, 1, kStaticFlag};
const std::string kNoFit = "Failed to calc magnetometer values, check your magnetic environment";

template <typename Operation>
std::string messageOf(Operation operation) {
    try {
        operation();
    } catch (const CalibrationException& exception) {
        return exception.what();
    }
    return "";
}

Matrix wholeMap(const InertialSensor& sensor) {
    return sensor.scaleMatrix * sensor.axisMapping;
}
// ---- A scripted Full run of a perfect device ----

// Expected readings in the frame of the sensor's half; the turns go about the axes that point up.
class MagnetometerScript : public ::testing::Test {
  protected:
    void begin(const LUID& luid = kPrimary) {
        sensor = std::make_unique<Magnetometer>(luid);
        sensor->setManager(&run);
        run.stages = 7;
    }

    void script() {
        sensor->setExpectedField(dip, field);
        const Matrix positions = sensor->expectedValues;
        for (int p = 0; p < 4; ++p) {
            still(row(positions, p));
            if (p < 3) {
                turn(row(positions, p), kUpAxes[p]);
                still(row(positions, p));
                turn(row(positions, p), kUpAxes[p]);  // stands for the tilt
            }
        }
    }

    void still(const Vector& reading) {
        run.times.push_back(time + 5.0);
        for (int i = 0; i < 100; ++i) {
            add(reading + ones3() * (i % 2 == 0 ? noise : -noise));
        }
        run.times.push_back(time + 5.0);
    }

    void turn(const Vector& reading, int axis) {
        for (int i = 0; i < 120; ++i) {
            Vector w(3);
            w[axis] = -2.0 * kPi * i / 120.0;
            add(rotationMatrix(w) * reading);
        }
    }

    void add(const Vector& reading) {
        time += 10.0;
        sensor->dataRecieved({time, reading});
    }

    std::string failure() {
        return messageOf([this] { sensor->calibrate(); });
    }

    static constexpr int kUpAxes[] = {2, 1, 0};

    FakeRun run{FlowType::Full};
    std::unique_ptr<Magnetometer> sensor;
    double dip = 60.0 * kDegree;
    double field = 480.0;
    double noise = 0.0;
    double time = 0.0;
};

TEST_F(MagnetometerScript, PerfectReadingsGiveTheIdentity) {
    for (const double degrees : {60.0, 5.0, 71.3}) {
        SCOPED_TRACE("dip " + std::to_string(degrees));
        run.times.clear();
        dip = degrees * kDegree;
        begin();
        script();
        ASSERT_EQ(failure(), "");
        EXPECT_LT(norm(sensor->offsetVector), 1e-6);
        EXPECT_LT(maxDifference(wholeMap(*sensor), identity(3)), 1e-9);
        EXPECT_NEAR(std::asin(sensor->sinDip), dip, 2.0 * kPi / 50.0 / 100.0);
        EXPECT_NEAR(norm(sensor->expectedRow(2)), field, 1e-6);
        EXPECT_TRUE(contains(reportOf(*sensor), "Success=true"));
    }
}

TEST_F(MagnetometerScript, AFieldThatPointsUpTurnsTheAxesRoundAndIsRefused) {
    dip = -60.0 * kDegree;
    begin();
    script();
    EXPECT_TRUE(contains(failure(), "Expected error vs calibrated is too high.\n"));
    EXPECT_LT(maxDifference(wholeMap(*sensor), identity(3) * -1.0), 1e-9);
}

TEST_F(MagnetometerScript, NoiseSpacesTheCloud) {
    noise = 4.0;
    begin();
    script();
    EXPECT_EQ(failure(), "");
    // A position is an odd number of samples: one of the two values is one sample ahead.
    EXPECT_NEAR(sensor->cloudSpacing, 8.0 * std::sqrt(3.0), 1e-3);
}

TEST_F(MagnetometerScript, OneReadingThatIsNoNumberCostsTheNoiseButNotTheRun) {
    begin();
    script();
    sensor->bufferedData[50].values[1] = kNaN;
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(sensor->cloudSpacing, 1.0);
    EXPECT_EQ(sensor->noiseVector[1], 1.0);
}

// The fit passes over them.
TEST_F(MagnetometerScript, AStageWithoutNumbersIsRefused) {
    begin();
    script();
    const std::vector<int> ind = sensor->findIndex();
    for (int i = ind[12]; i < ind[13]; ++i) {
        sensor->bufferedData[static_cast<std::size_t>(i)].values[2] = kNaN;
    }
    EXPECT_NE(failure(), "");
    EXPECT_TRUE(sensor->calibrationToWrite.empty());
}

TEST_F(MagnetometerScript, NothingIsWrittenForReadingsThatMakeNoEllipsoid) {
    const auto spoil = [this](const std::function<Vector(const Vector&)>& change) {
        run.times.clear();
        begin();
        script();
        for (Sample& sample : sensor->bufferedData) {
            sample.values = change(sample.values);
        }
        EXPECT_NE(failure(), "");
        EXPECT_TRUE(sensor->calibrationToWrite.empty());
    };
    spoil([](const Vector& v) { return Vector{v[0], v[1], 100.0}; });
    spoil([](const Vector& v) { return Vector{v[0], v[0], v[0]}; });
    spoil([](const Vector&) { return Vector{100.0, 200.0, 300.0}; });
    spoil([](const Vector&) { return Vector(3); });
    spoil([](const Vector& v) { return v * kNaN; });
    spoil([](const Vector& v) { return Vector{v[0], INFINITY, v[2]}; });
    spoil([](const Vector& v) { return v * 1e200; });
}

TEST_F(MagnetometerScript, AFieldOutsideTheBandIsRefused) {
    const std::vector<std::pair<double, std::string>> fields = {
        {245.0, "Calculated norm value is too low.\n"},
        {255.0, ""},
        {645.0, ""},
        {655.0, "Calculated norm value is too high.\n"}};
    for (const auto& [strength, reason] : fields) {
        run.times.clear();
        field = strength;
        begin();
        script();
        EXPECT_EQ(failure(), reason.empty()
                                 ? ""
                                 : "Calibration failed for sensor Magnetometer. Reason: " + reason);
    }
}

TEST_F(MagnetometerScript, TurnsThatShowNoAxisFailAsTheFitDoes) {
    begin();
    script();
    const std::vector<int> ind = sensor->findIndex();
    for (int i = ind[5]; i < ind[6]; ++i) {
        sensor->bufferedData[static_cast<std::size_t>(i)].values = {0.0, 0.0, 0.0};
    }
    sensor->setThresholds();
    sensor->setStageRows();
    sensor->computeStageStatistics();
    EXPECT_EQ(mathError([this] { sensor->calcCorrection(Ellipsoid()); }),
              "Math Error: Failed to invert matrix");
}

TEST_F(MagnetometerScript, WithoutSamplesTheEnvironmentIsToBlame) {
    begin();
    run.times.assign(14, 0.0);
    EXPECT_EQ(failure(), kNoFit);
}

TEST_F(MagnetometerScript, OnlyASecondarySensorAsksHowTheDeviceIsBuilt) {
    const auto build = [this](const LUID& luid, FormFactor formFactor, int hinge) {
        run.times.clear();
        begin(luid);
        script();
        sensor->formFactor = static_cast<std::uint8_t>(formFactor);
        sensor->hinge = static_cast<std::uint8_t>(hinge);
        return failure();
    };
    EXPECT_EQ(build(kPrimary, FormFactor::tablet, 9), "");
    EXPECT_EQ(build(kSecondary, FormFactor::tablet, 0), "Undefined form factor encountered.");
    EXPECT_EQ(build(kSecondary, FormFactor::mid, 4), "Undefined hinge configuration encountered.");
}

TEST_F(MagnetometerScript, OtherFlowsComputeNothing) {
    for (const FlowType flow :
         {FlowType::FourSteps, FlowType::MagAccuracyTest, FlowType::AccelerometerOnly}) {
        run.flowKind = flow;
        begin();
        run.stages = 4;
        EXPECT_EQ(failure(), "");
        EXPECT_TRUE(sensor->calibrationToWrite.empty());
        EXPECT_EQ(sensor->offsetVector, Vector(3));
    }
}

TEST_F(MagnetometerScript, AFullFlowWithTooFewStagesFailsInOrder) {
    begin();
    still({0.0, 240.0, -415.0});
    still({0.0, -415.0, -240.0});
    EXPECT_NE(failure(), "");
}

TEST(Magnetometer, WhichSamplesItKeeps) {
    const std::vector<std::tuple<FlowType, RunCommand, std::size_t, std::uint32_t>> cases = {
        {FlowType::Full, RunCommand::Calibrate, 1, 0},
        {FlowType::Minimal, RunCommand::Calibrate, 0, 1},
        {FlowType::Minimal, RunCommand::TestCalibration, 1, 1},
        {FlowType::Full, RunCommand::MagEnvironmentTest, 1, 0}};
    for (const auto& [flow, command, buffered, summed] : cases) {
        FakeRun run(flow, command);
        Magnetometer sensor(kPrimary);
        sensor.setManager(&run);
        EXPECT_TRUE(sensor.dataRecieved({1.0, {1.0, 2.0, 3.0}}));
        EXPECT_FALSE(sensor.dataRecieved({2.0, {1.0, 2.0}}));
        EXPECT_EQ(sensor.bufferedData.size(), buffered);
        EXPECT_EQ(sensor.sampleCount, summed);
    }
}

TEST(Magnetometer, ServesAllRunsButThoseOfLight) {
    FakeRun run(FlowType::Full, RunCommand::MagEnvironmentTest);
    const auto sensor = makeSensor({kCompassType, 0, 0, 0, kStaticFlag});
    sensor->setManager(&run);
    EXPECT_EQ(sensor->getDisplayName(), "Magnetometer");
    EXPECT_TRUE(sensor->supportsRunType(RunCommand::MagEnvironmentTest));
    EXPECT_TRUE(sensor->supportsRunType(RunCommand::TestCalibration));
    EXPECT_FALSE(sensor->supportsRunType(RunCommand::CalibrateAls));
    EXPECT_EQ(sensor->toDisplayText(), "Test passed. You are good to go!\n");
    run.type = RunCommand::Calibrate;
    EXPECT_TRUE(startsWith(sensor->toDisplayText(), "Magnetometer Offset:\n"));
}

TEST(Magnetometer, LimitsDependOnTheFlowAndFollowTheUnit) {
    FakeRun run(FlowType::Full);
    Magnetometer sensor(kPrimary);
    sensor.setManager(&run);
    sensor.setThresholds();
    EXPECT_EQ(sensor.limits.whiteNoiseLimit, 15.0);
    EXPECT_EQ(sensor.limits.rotationLimit, 20.0);
    EXPECT_EQ(sensor.minSampleSpacing, 10.0);
    run.flowKind = FlowType::FourSteps;
    sensor.samplingUnit = Unit::microTesla;
    sensor.setThresholds();
    EXPECT_NEAR(sensor.limits.whiteNoiseLimit, 5.0, 1e-12);
    EXPECT_NEAR(sensor.limits.offsetLimit, 1000.0, 1e-9);
    EXPECT_NEAR(sensor.minSampleSpacing, 1.0, 1e-12);
}

TEST(Magnetometer, SearchDipNeverTriesTheUpperEnd) {
    FakeRun run(FlowType::Full);
    Magnetometer sensor(kPrimary);
    sensor.setManager(&run);
    const auto search = [&sensor](double dip, int steps, double low, double high) {
        sensor.setExpectedField(dip, 480.0);
        const Matrix means = sensor.expectedValues;
        return sensor.searchDip(steps, means, 480.0, low, high);
    };
    EXPECT_NEAR(search(0.7, 10, 0.0, 1.0), 0.7, 1e-15);
    EXPECT_NEAR(search(1.0, 10, 0.0, 1.0), 0.9, 1e-15);
    EXPECT_EQ(sensor.searchDip(10, Matrix(4, 3) * kNaN, 480.0, -0.5, 0.5), -0.5);
}

}  // namespace
}  // namespace tavocal::test
