#include "sensors/magnetic/Magnetometer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "base/Text.h"
#include "numerics/NumericsTesting.h"
#include "sensors/SensorFactory.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/MagnetometerMounting.h"
#include "support/Outcome.h"

namespace tavocal::test {
namespace {

// ---- A scripted Full run ----

// A device that turns about the axis that points up, in each position but the last.
class MagnetometerScript : public ::testing::Test {
  protected:
    void script(const MagnetometerMounting& mounting = kMagnetometerMountings[0]) {
        run.stages = 7;
        run.times.clear();
        sensor = mounting.makeSensor(run);
        const Matrix positions = mounting.readings(simulator::Flow::Full, field, dip / kDegree);
        for (int p = 0; p < 4; ++p) {
            still(row(positions, p));
            if (p < 3) {
                const Vector axis = column(mounting.frame(), 2 - p);
                turn(row(positions, p), axis);
                still(row(positions, p));
                turn(row(positions, p), axis);  // stands for the tilt
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

    void turn(const Vector& reading, const Vector& axis) {
        for (int i = 0; i < 120; ++i) {
            add(rotationMatrix(axis * (-2.0 * kPi * i / 120.0)) * reading);
        }
    }

    void add(const Vector& reading) {
        time += 10.0;
        sensor->dataRecieved({time, distortion * reading + offset});
    }

    std::string failure() {
        return failureOf([this] { sensor->calibrate(); });
    }

    Vector& reading(int index) {
        return sensor->bufferedData[static_cast<std::size_t>(index)].values;
    }

    // How far the axes that the turns show are from the right ones, if the fit changes nothing.
    double errorOfAxes() {
        sensor->calcCorrection(Ellipsoid());
        return maxDifference(sensor->scaleMatrix, identity(3));
    }

    FakeRun run{FlowType::Full};
    std::unique_ptr<Magnetometer> sensor;
    Matrix distortion = identity(3);
    Vector offset{0.0, 0.0, 0.0};
    double dip = 60.0 * kDegree;
    double field = 480.0;
    double noise = 0.0;
    double time = 0.0;
};

// A coarse search over 50 steps of the half circle, then 100 steps over two of these.
double nearestSearchedDip(double dip) {
    const double low = std::round((dip + kPi / 2) / (kPi / 50)) * (kPi / 50) - kPi / 2 - kPi / 50;
    return low + std::round((dip - low) / (kPi / 2500)) * (kPi / 2500);
}

TEST_F(MagnetometerScript, FindsHardAndSoftIronMountingAndDip) {
    std::uint64_t seed = 1;
    for (const MagnetometerMounting& mounting : kMagnetometerMountings) {
        SCOPED_TRACE(mounting.text());
        RandomNumbers random(seed++);
        // Every other sensor's axes are swapped and left-handed too.
        const Matrix swap(3, 3, {0, 1, 0, 1, 0, 0, 0, 0, 1});
        distortion = rotationMatrix(random.vector(3, 0.1)) * diagonal({0.8, 1.0, 1.3}) *
                     rotationMatrix(random.vector(3, 0.1)) * (seed % 2 == 0 ? identity(3) : swap);
        offset = random.vector(3, 500.0);
        dip = random.between(1.0, 80.0) * kDegree;
        script(mounting);
        ASSERT_EQ(failure(), kNoFailure);
        EXPECT_LT(maxDifference(sensor->offsetVector, offset), 1e-5);
        // The strength of the field is unknown: the map is known but for a factor.
        const Matrix undone = sensor->scaleMatrix * sensor->axisMapping * distortion;
        EXPECT_LT(maxDifference(undone / undone[0][0], identity(3)), 1e-6);
        EXPECT_NEAR(std::asin(sensor->sinDip), nearestSearchedDip(dip), 1e-9);
        EXPECT_NEAR(norm(sensor->expectedRow(2)), field * undone[0][0], 1e-3);
        EXPECT_EQ(sensor->calibrationToWrite.size(), 40U);
    }
    dip = -60.0 * kDegree;  // turns the axes round, which the gate doesn't let through
    script();
    EXPECT_TRUE(contains(failure(), "Expected error vs calibrated is too high.\n"));
    EXPECT_TRUE(sensor->calibrationToWrite.empty());
}

TEST_F(MagnetometerScript, NoiseSpacesTheCloud) {
    noise = 4.0;
    script();
    EXPECT_EQ(failure(), kNoFailure);
    // A position is an odd number of samples: one of the two values is one sample ahead.
    EXPECT_NEAR(sensor->cloudSpacing, 8.0 * std::sqrt(3.0), 1e-3);
    reading(50)[1] = std::nan("");
    sensor->noiseVector = Vector(3);
    EXPECT_TRUE(contains(failure(), "Calculated calibration is not finite.\n"));
    EXPECT_EQ(sensor->cloudSpacing, 1.0);
}

// A turn's first samples count, of its last ones as many don't as belong to the next position.
TEST_F(MagnetometerScript, TheAxesComeFromTheTurnsAlone) {
    script();
    sensor->setStageRows();
    sensor->computeStageStatistics();
    const std::vector<int> ind = sensor->findIndex();
    for (const auto& [window, cut] : {std::pair(1U, 1), {5U, 5}, {9U, 9}}) {
        SCOPED_TRACE(window);
        const int begin = ind[window];
        const int end = ind[window + 1] - cut;
        for (int outside = end; outside < ind[window + 1]; ++outside) {
            reading(outside) = {9.0, 8.0, 7.0};
        }
        reading(begin - 1) = {9.0, 8.0, 7.0};
        EXPECT_LT(errorOfAxes(), 1e-9);
        for (const int inside : {begin, end - 1}) {
            const Vector before = std::exchange(reading(inside), {300.0, 200.0, 100.0});
            EXPECT_GT(errorOfAxes(), 1e-6);
            reading(inside) = before;
        }
    }
    run.stages = 5;
    run.times.resize(10);
    EXPECT_EQ(failureOf([this] { errorOfAxes(); }),
              "Magnetometer Calibration Error: Failed splitting data to segments");
}

TEST_F(MagnetometerScript, WhatIsNoEllipsoidFails) {
    for (const double factor : {0.0, std::nan(""), 1e200}) {
        distortion = identity(3) * factor;
        script();
        EXPECT_NE(failure(), kNoFailure);
        EXPECT_TRUE(sensor->calibrationToWrite.empty());
    }
    sensor->bufferedData.clear();
    EXPECT_EQ(failure(), "Failed to calc magnetometer values, check your magnetic environment");
}

TEST_F(MagnetometerScript, OnlyTheFullAndTheMinimalFlowCompute) {
    offset = {7.0, 8.0, 9.0};
    for (const FlowType flow :
         {FlowType::FourSteps, FlowType::MagAccuracyTest, FlowType::Minimal}) {
        run.flowKind = flow;
        sensor = kMagnetometerMountings[0].makeSensor(run);
        sensor->reversal.reverseMatrix = identity(3);
        add({0.0, 360.0, 270.0});
        EXPECT_EQ(failure(), kNoFailure);
        EXPECT_EQ(sensor->calibrationToWrite.empty(), flow != FlowType::Minimal);
        EXPECT_EQ(sensor->offsetVector, flow == FlowType::Minimal ? offset : Vector(3));
    }
}

// ---- Parts ----

TEST(Magnetometer, StartsAsItsKind) {
    FakeRun run(FlowType::Full, RunCommand::MagEnvironmentTest);
    const auto sensor = kMagnetometerMountings[0].makeSensor(run);
    EXPECT_EQ(sensor->firmwareUnit, Unit::microGauss);
    EXPECT_EQ(sensor->rawDivisor, 1000);
    const auto& still = sensor->stillness;
    EXPECT_EQ((Vector{still.stillFloor, still.stillStdLimit, still.stillRangeLimit}),
              (Vector{1.0, 30.0, 100.0}));
    for (int command = 0; command < 5; ++command) {
        EXPECT_EQ(sensor->supportsRunType(static_cast<RunCommand>(command)), command != 2);
    }
    EXPECT_FALSE(sensor->dataRecieved({3.0, {1.0, 2.0}}));
}

TEST(Magnetometer, SeesMovementsAboveItsThresholds) {
    FakeRun run(FlowType::Full);
    for (const auto& [swing, sees] : {std::pair(200.0, false), {200.1, true}}) {
        const auto sensor = kMagnetometerMountings[0].makeSensor(run);
        for (int i = 0; i < 30; ++i) {
            sensor->dataRecieved({10.0 * i, {0.0, i < 15 ? 0.0 : swing, 0.0}});
        }
        EXPECT_EQ(sensor->rotationDetected(0.0), sees);
        sensor->setReferenceVector({0.0, swing + (sees ? 300.1 : -300.0), 0.0});
        EXPECT_EQ(sensor->movedFromReference(), sees);
    }
}

TEST(Magnetometer, LimitsDependOnTheFlowAndFollowTheUnit) {
    const auto limitsOf = [](FlowType flow, Unit unit) {
        FakeRun run(flow);
        const auto s = kMagnetometerMountings[0].makeSensor(run);
        s->samplingUnit = unit;
        s->setThresholds();
        const GateLimits& l = s->limits;
        return Vector{l.offsetLimit,        l.normStdLimit,    l.expectedErrorLimit,
                      l.whiteNoiseLimit,    l.scaleLimit,      l.rotationLimit,
                      l.expectedNorm,       l.normTolerance,   s->defaultNoise,
                      s->faceUpOffsetLimit, s->faceUpStdLimit, s->minSampleSpacing};
    };
    const Vector full{10000, 30, 150, 15, 1, 20, 450, 200, 1, 5000, 40, 10};
    const Vector other{10000, 30, 150, 50, 1, 1, 450, 200, 1, 5000, 40, 10};
    for (const FlowType flow : {FlowType::Full, FlowType::Minimal, FlowType::FourSteps}) {
        const Vector& expected = flow == FlowType::Full ? full : other;
        EXPECT_EQ(limitsOf(flow, Unit::milliGauss), expected);
        EXPECT_LT(maxDifference(limitsOf(flow, Unit::microTesla) * 10.0, expected), 1e-9);
    }
}

TEST(Magnetometer, SearchDipNeverTriesTheUpperEnd) {
    FakeRun run(FlowType::Full);
    const auto sensor = kMagnetometerMountings[0].makeSensor(run);
    for (const auto& [dip, found] : {std::pair(0.7, 0.7), {1.0, 0.9}, {0.0, 0.0}}) {
        sensor->setExpectedField(dip, 480.0);
        const Matrix means = sensor->expectedValues;
        EXPECT_NEAR(sensor->searchDip(10, means, 480.0, 0.0, 1.0), found, 1e-15);
    }
    EXPECT_EQ(sensor->searchDip(10, Matrix(4, 3) * std::nan(""), 480.0, -0.5, 0.5), -0.5);
    EXPECT_NEAR(sensor->meanAlignmentError(identity(3) * -2.0, sensor->expectedValues), kPi, 1e-7);
}

}  // namespace
}  // namespace tavocal::test
