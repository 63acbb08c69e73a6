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

    bool headings(bool (*test)(InertialSensor&, const Vector&), const Vector& degrees) {
        const Vector center{10.0, 20.0, 30.0};
        for (int i = 0; i < 4; ++i) {
            const double angle = degrees[i] * kDegree;
            sensor->stageMeans.setRow(i, Vector{std::sin(angle), std::cos(angle), 0.0} + center);
        }
        return test(*sensor, center);
    }

    bool scale(double ratio) {
        Ellipsoid fit;
        fit.axisGain = {100.0, 100.0 * ratio};
        return TestMagScale(*sensor, fit);
    }

    FakeRun run{FlowType::MagAccuracyTest};
    std::unique_ptr<Magnetometer> sensor;
};

TEST_F(MagnetometerTestsTest, EachLimitIsTheConfigurations) {
    struct Row {
        std::string label;
        double TestingConfig::*key;
        double limit;
        std::function<bool(double)> test;
    };
    const std::string stage2 = "motionless Magnetometer step 2 Std value test";
    const std::string quiet = "Magnetometer static values test";
    const std::string turns = "Magnetometer values test";
    const std::string compass = "Compass direction test";
    const auto noise = &TestingConfig::mag_Threshold_Noise;
    const auto still = &TestingConfig::mag_Static_Threshold;
    const auto angles = &TestingConfig::mag_Threshold_angles;
    const auto round = &TestingConfig::mag_scale_Thershold;
    for (const Row& r : {
             Row{stage2, noise, 15.0,
                 [this](double v) {
                     return stageNoise({v, 0.0, -v});
                 }},
             Row{quiet, still, 70.0,
                 [this](double v) {
                     return staticValues({v, -1.1 * v, v});
                 }},
             Row{quiet, still, 70.0,
                 [this](double v) {
                     return staticValues({2 * v, v, 3 * v});
                 }},
             Row{quiet, still, 70.0,
                 [this](double v) {
                     return staticValues({90, 2 * v, v});
                 }},
             Row{turns, angles, 15.0,
                 [this](double v) {
                     return headings(TestMagValues, {30, 120 + v, 210 + v, 300});
                 }},
             Row{turns, angles, 15.0,
                 [this](double v) {
                     return headings(TestMagValues, {20 - v, 110, 200, 290});
                 }},
             Row{compass, angles, 15.0,
                 [this](double v) {
                     return headings(TestDirection, {0, 90, 180, 270 + v});
                 }},
             Row{compass, angles, 15.0,
                 [this](double v) {
                     return headings(TestDirection, {-v, 90, 180, 270});
                 }},
             Row{"Magnet scale test", round, 0.15, [this](double v) { return scale(1.0 + v); }},
             Row{"Magnet scale test", round, 0.15, [this](double v) { return scale(1.0 - v); }},
         }) {
        begin();
        SCOPED_TRACE(r.label);
        EXPECT_EQ(printedBy([&] { EXPECT_TRUE(r.test(r.limit * 0.999)); }), "");
        EXPECT_EQ(run.failures, Failures());
        begin();
        const std::string printed = printedBy([&] { EXPECT_FALSE(r.test(r.limit * 1.001)); });
        EXPECT_EQ(printed.substr(0, printed.find('\n')), "Error in " + r.label);
        EXPECT_EQ(run.failures, (Failures{{0, "Magnetometer"}}));
        EXPECT_TRUE(contains(reportOf(*sensor), ") ! FAILED!"));
        begin();
        testingConfig().*r.key *= 1.01;
        EXPECT_TRUE(r.test(r.limit * 1.001));
        printedBy([&] { EXPECT_FALSE(r.test(std::nan(""))); });
        testingConfig() = TestingConfig();
    }
}

TEST_F(MagnetometerTestsTest, ReportsEachTestUnderItsName) {
    run.stages = 2;
    sensor->stageStds.setRow(1, {1.0, 2.0, 3.0});
    TestMagSTD(*sensor);
    run.stages = 4;
    staticValues({7.5, 8.0, 9.0});
    headings(TestMagValues, {1, 93, 180, 268});
    headings(TestDirection, {359.5, 93, 180, 268});
    scale(1.1);
    const auto item = [](const std::string& name, const std::string& comment,
                         const std::string& values) {
        const auto cols = std::count(values.begin(), values.end(), ',') + 1;
        return "!" + comment + "! " + name + "[Rows=1 Cols=" + std::to_string(cols) + "](Values('" +
               values + ";')) ";
    };
    const auto expected = [&](const std::string& name, const std::string& what,
                              const std::string& values, const std::string& threshold) {
        return item(name, what + " that is expected at a perfectly calibrated system", values) +
               "threshold(Values('" + threshold + "')) !: PASSED!";
    };
    const std::string zeros = "0.000000,0.000000,0.000000";
    const std::string noNoise = expected("ExpectedDeviation", "noise", zeros, "15.000000");
    EXPECT_EQ(
        reportOf(*sensor),
        "Sensor[LUID=020f000000000002 Type=Magnetometer SamplingUnit=milliGauss Success=false "
        "IsPrimary=true](Performing_TestMagSTD(!step 0! " +
            item("StandardDeviation", "The measured noise", zeros) + noNoise + " !step 1! " +
            item("StandardDeviation", "The measured noise", "1.000000,2.000000,3.000000") +
            noNoise + ") Performing_TestStaticValues(" +
            item("StaticValue", "The measured static value", "7.500000") +
            expected("ExpectedStaticValue", "static value", "0.000000", "70.000000") +
            ") Performing_TestMagValues(" +
            item("MagnetometerValues", "The measured Magnetometer values",
                 "93.000000,92.000000,87.000000,88.000000") +
            expected("ExpectedValues", "Mag values", "90.000000,90.000000,90.000000,90.000000",
                     "15.000000") +
            ") Performing_TestDirection(" +
            item("CompassDirection", "The measured compass direction",
                 "359.500000,93.000000,180.000000,268.000000") +
            expected("ExpectedCompassDirection", "compass direction",
                     "0.000000,90.000000,180.000000,270.000000", "15.000000") +
            ") Performing_TestMagScale(" + item("MagScale", "The measured Mag scale", "1.100000") +
            expected("ExpectedMagScale", "Mag scale", "1.000000", "0.150000") + "))");
}

TEST_F(MagnetometerTestsTest, EachFaultOfTheDeviceFailsItsTests) {
    using simulator::Fault;
    for (const auto& [fault, verdicts] : {std::pair<Fault, std::string>(Fault::None, "....."),
                                          {Fault::Noisy, "F...."},
                                          {Fault::EllipticMag, "....F"},
                                          {Fault::Heading30, "...F."}}) {
        simulator::RecordingOptions options;
        options.flow = simulator::Flow::MagAccuracy;
        options.sensors = "M";
        options.perfect = true;
        options.fault = fault;
        options.faultSensor = simulator::SensorKind::Magnetometer;
        MotionReplay replay(FlowType::MagAccuracyTest, RunCommand::TestCalibration);
        const auto judged = makeNamedSensor("Magnetometer");
        replay.add(judged);
        replay.play(simulator::record(options));
        printedBy([&] { EXPECT_EQ(judged->testCalibration(), fault == Fault::None); });
        const std::string report = reportOf(*judged);
        std::string found;
        for (std::size_t at = report.find("Performing_"); at != std::string::npos;) {
            const std::size_t end = report.find("Performing_", at + 1);
            found += contains(report.substr(at, end - at), " FAILED") ? "F" : ".";
            at = end;
        }
        EXPECT_EQ(found, verdicts);
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
