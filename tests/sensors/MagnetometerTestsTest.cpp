#include "sensors/MagnetometerTests.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "base/Text.h"
#include "formats/TestingConfig.h"
#include "numerics/NumericsTesting.h"
#include "sensors/Ellipsoid.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/MagnetometerMounting.h"
#include "support/MotionReplay.h"
#include "support/Outcome.h"

namespace tavocal::test {
namespace {

using Failures = std::vector<std::pair<int, std::string>>;

class MagnetometerTestsTest : public ::testing::Test {
  protected:
    void SetUp() override { begin(); }
    void TearDown() override { testingConfig() = TestingConfig(); }

    void begin() {
        run = FakeRun(FlowType::MagAccuracyTest, RunCommand::TestCalibration);
        sensor = kMagnetometerMountings[0].makeSensor(run);
    }

    bool stageNoise(const Vector& deviations) {
        sensor->stageStds.setRow(2, deviations);
        return TestMagSTD(*sensor);
    }

    // Samples that swing by so much along the three axes.
    bool staticValues(const Vector& deviations) {
        for (int i = 0; i < 100; ++i) {
            sensor->dataRecieved({10.0 * i, deviations * (i % 2 == 0 ? 1.0 : -1.0)});
        }
        return TestStaticValues(*sensor);
    }

    bool headings(const Vector& degrees, bool (*test)(InertialSensor&, const Vector&)) {
        const Vector center{10.0, 20.0, 30.0};
        for (int i = 0; i < 4; ++i) {
            const double angle = degrees[i] * kDegree;
            sensor->stageMeans.setRow(i, Vector{std::sin(angle), std::cos(angle), 0.0} + center);
        }
        return test(*sensor, center);
    }

    bool scale(const Vector& radii) {
        Ellipsoid fit;
        fit.axisGain = radii;
        return TestMagScale(*sensor, fit);
    }

    FakeRun run{FlowType::MagAccuracyTest};
    std::unique_ptr<Magnetometer> sensor;
};

TEST_F(MagnetometerTestsTest, EachLimitIsTheConfigurations) {
    using Config = TestingConfig;
    using Judge = std::function<bool(const Vector&)>;
    struct Row {
        std::string label;
        double Config::*key;
        double limit;
        Judge test;
        Vector good;
        Vector change;  // once the limit leads to it
    };
    const Judge stds = [this](const Vector& v) { return stageNoise(v); };
    const Judge quiet = [this](const Vector& v) { return staticValues(v); };
    const Judge turns = [this](const Vector& v) { return headings(v, TestMagValues); };
    const Judge compass = [this](const Vector& v) { return headings(v, TestDirection); };
    const Judge round = [this](const Vector& v) { return scale(v); };
    const std::string stage2 = "motionless Magnetometer step 2 Std value test";
    const std::string one = "Magnetometer static values test";
    const std::string four = "Magnetometer values test";
    const std::string north = "Compass direction test";
    const auto deviation = &Config::mag_Threshold_Noise;
    const auto still = &Config::mag_Static_Threshold;
    const auto angle = &Config::mag_Threshold_angles;
    const auto ratio = &Config::mag_scale_Thershold;
    const Row rows[] = {
        {stage2, deviation, 15, stds, {0, 0, 0}, {1, 0, -1}},
        {one, still, 70, quiet, {0, 9, 99}, {1, 1, 0}},
        {one, still, 70, quiet, {99, 0, 9}, {0, 1, 1}},
        {one, still, 70, quiet, {9, 99, 0}, {1, 0, 1}},
        {four, angle, 15, turns, {30, 120, 210, 300}, {0, 1, 1, 0}},
        {four, angle, 15, turns, {20, 110, 200, 290}, {-1, 0, 0, 0}},
        {north, angle, 15, compass, {0, 90, 180, 270}, {0, 0, 0, 1}},
        {north, angle, 15, compass, {0, 90, 180, 270}, {-1, 0, 0, 0}},
        {"Magnet scale test", ratio, 0.15, round, {1, 1}, {0, 1}},
        {"Magnet scale test", ratio, 0.15, round, {1, 1}, {0, -1}},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.label);
        const auto passes = [&](double change) {
            begin();
            return r.test(r.good + r.change * change);
        };
        EXPECT_EQ(printedBy([&] { EXPECT_TRUE(passes(r.limit * 0.999)); }), "");
        EXPECT_EQ(run.failures, Failures());
        const std::string printed = printedBy([&] { EXPECT_FALSE(passes(r.limit * 1.001)); });
        EXPECT_EQ(printed.substr(0, printed.find('\n')), "Error in " + r.label);
        EXPECT_EQ(run.failures, (Failures{{0, "Magnetometer"}}));
        EXPECT_TRUE(contains(reportOf(*sensor), ") ! FAILED!"));
        testingConfig().*r.key *= 1.01;
        EXPECT_TRUE(passes(r.limit * 1.001));
        printedBy([&] { EXPECT_FALSE(passes(std::nan(""))); });
        testingConfig() = TestingConfig();
    }
}

// The names and comments around the numbers are the same in every run.
TEST_F(MagnetometerTestsTest, ReportsWhatItMeasured) {
    run.stages = 2;
    sensor->stageStds.setRow(1, {1.0, 2.0, 3.0});
    TestMagSTD(*sensor);
    run.stages = 4;
    staticValues({7.5, 8.0, 9.0});
    headings({1, 93, 180, 268}, TestMagValues);
    headings({359.5, 93, 180, 268}, TestDirection);
    scale({100.0, 110.0});
    const std::string report = reportOf(*sensor);
    std::size_t at = 0;
    for (const char* text :
         {"(Performing_TestMagSTD(!step 0! ", "!step 1! ", "'1.000000,2.000000,3.000000;'",
          "'0.000000,0.000000,0.000000;'", "threshold(Values('15.000000')) !: PASSED!",
          ") Performing_TestStaticValues(", "'7.500000;'", "'0.000000;'",
          "threshold(Values('70.000000')) !: PASSED!", ") Performing_TestMagValues(",
          "'93.000000,92.000000,87.000000,88.000000;'",
          "'90.000000,90.000000,90.000000,90.000000;'", ") Performing_TestDirection(",
          "'359.500000,93.000000,180.000000,268.000000;'",
          "'0.000000,90.000000,180.000000,270.000000;'", ") Performing_TestMagScale(",
          "'1.100000;'", "'1.000000;'", "threshold(Values('0.150000')) !: PASSED!))"}) {
        at = report.find(text, at);
        EXPECT_NE(at, std::string::npos) << text;
    }
}

TEST_F(MagnetometerTestsTest, AllOfThemRunAndMustPass) {
    using simulator::Fault;
    for (const Fault fault : {Fault::None, Fault::EllipticMag, Fault::Heading30}) {
        simulator::RecordingOptions options;
        options.flow = simulator::Flow::MagAccuracy;
        options.perfect = true;
        options.fault = fault;
        MotionReplay replay(FlowType::MagAccuracyTest, RunCommand::TestCalibration);
        const auto judged = makeNamedSensor("Magnetometer");
        replay.add(judged);
        replay.play(simulator::record(options));
        printedBy([&] { EXPECT_EQ(judged->testCalibration(), fault == Fault::None); });
    }
    run.flowKind = FlowType::Minimal;
    EXPECT_TRUE(sensor->testCalibration());
    EXPECT_FALSE(sensor->report.exists());
}

TEST_F(MagnetometerTestsTest, HeadingsAreThoseOfTheSimulatedDevice) {
    const Vector center{10.0, 20.0, 30.0};
    for (const MagnetometerMounting& mounting : kMagnetometerMountings) {
        SCOPED_TRACE(mounting.text());
        sensor = mounting.makeSensor(run);
        sensor->stageMeans = Matrix(5, 3);
        const Matrix readings = mounting.readings(simulator::Flow::MagAccuracy, 480.0, 60.0);
        for (int i = 0; i < 5; ++i) {
            sensor->stageMeans.setRow(i, row(readings, i % 4) + center);
        }
        for (run.stages = 3; run.stages <= 5; ++run.stages) {
            EXPECT_LT(maxDifference(calcHeadings(*sensor, center),
                                    {0.0, 90.0, 180.0, run.stages == 3 ? 0.0 : 270.0}),
                      1e-9);
        }
    }
}

}  // namespace
}  // namespace tavocal::test
