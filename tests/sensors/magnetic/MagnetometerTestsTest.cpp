#include "sensors/magnetic/MagnetometerTests.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <tuple>

#include "base/Text.h"
#include "numerics/NumericsTesting.h"
#include "sensors/SensorFactory.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/Lines.h"
#include "support/MagnetometerMounting.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal::test {
namespace {

class MagnetometerTestsTest : public ::testing::Test {
  protected:
    void begin() {
        run.failures.clear();
        sensor = kMagnetometerMountings[0].makeSensor(run);
    }

    bool headings(const Vector& degrees, bool (*test)(InertialSensor&, const Vector&)) {
        const Vector center{10.0, 20.0, 30.0};
        for (int i = 0; i < 4; ++i) {
            const double angle = degrees[i] * kDegree;
            sensor->stageMeans.setRow(i, Vector{std::sin(angle), std::cos(angle), 0.0} + center);
        }
        return test(*sensor, center);
    }

    FakeRun run{FlowType::MagAccuracyTest, RunCommand::TestCalibration};
    std::unique_ptr<Magnetometer> sensor = kMagnetometerMountings[0].makeSensor(run);
};

TEST_F(MagnetometerTestsTest, EachLimitIsTheConfigurations) {
    using Config = TestingConfig;
    using Judge = std::function<bool(const Vector&)>;
    // The last vector, once the limit is added to the good values, leads to that limit.
    using Row = std::tuple<std::string, double Config::*, double, Judge, Vector, Vector>;
    const Judge stds = [this](const Vector& deviations) {
        sensor->stageStds.setRow(2, deviations);
        return TestMagSTD(*sensor);
    };
    const Judge quiet = [this](const Vector& deviations) {
        for (int i = 0; i < 100; ++i) {
            sensor->dataRecieved({10.0 * i, deviations * (i % 2 == 0 ? 1.0 : -1.0)});
        }
        return TestStaticValues(*sensor);
    };
    const Judge turns = [this](const Vector& v) { return headings(v, TestMagValues); };
    const Judge compass = [this](const Vector& v) { return headings(v, TestDirection); };
    const Judge round = [this](const Vector& radii) {
        Ellipsoid fit;
        fit.axisGain = radii;
        return TestMagScale(*sensor, fit);
    };
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
        {"Magnet scale test", ratio, 0.15, round, {100, 100}, {0, 100}},
        {"Magnet scale test", ratio, 0.15, round, {100, 100}, {0, -100}},
    };
    for (const auto& [label, key, limit, test, good, change] : rows) {
        SCOPED_TRACE(label);
        const auto passes = [&, &judge = test, &from = good, &way = change](double times) {
            begin();
            return judge(from + way * times);
        };
        EXPECT_EQ(printedBy([&, far = limit * 0.999] { EXPECT_TRUE(passes(far)); }), "");
        EXPECT_TRUE(run.failures.empty());
        const double outside = limit * 1.001;
        const std::string printed = printedBy([&] { EXPECT_FALSE(passes(outside)); });
        EXPECT_EQ(linesOf(printed).at(0), "Error in " + label);
        EXPECT_EQ(run.failures, (std::vector{std::pair(0, std::string("Magnetometer"))}));
        EXPECT_TRUE(contains(reportOf(*sensor), ") ! FAILED!"));
        testingConfig().*key *= 1.01;
        EXPECT_TRUE(passes(outside));
        printedBy([&] { EXPECT_FALSE(passes(std::nan(""))); });
        testingConfig() = TestingConfig();
    }
}

TEST_F(MagnetometerTestsTest, MinimalRunsAreNotJudged) {
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
            // In the middle between two stops.
            const Vector between = row(readings, i % 4) + row(readings, (i + 1) % 4);
            sensor->stageMeans.setRow(i, between + center);
        }
        for (run.stages = 3; run.stages <= 5; ++run.stages) {
            EXPECT_LT(maxDifference(calcHeadings(*sensor, center),
                                    {45.0, 135.0, 225.0, run.stages == 3 ? 0.0 : 315.0}),
                      1e-9);
        }
    }
}

}  // namespace
}  // namespace tavocal::test
