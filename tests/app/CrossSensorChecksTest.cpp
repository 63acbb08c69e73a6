#include "app/CrossSensorChecks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/FormFactor.h"
#include "formats/TestingConfig.h"
#include "numerics/NumericsTesting.h"
#include "platform/Console.h"
#include "sensors/Accelerometer.h"
#include "sensors/Gyroscope.h"
#include "sensors/MotionReplay.h"
#include "sensors/SensorTypes.h"

namespace tavocal::testing {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr SelectedClasses kAll{true, true, true};

// A calibrated sensor of the class that the display name begins with.
std::shared_ptr<InertialSensor> makePerfectSensor(const std::string& displayName) {
    const auto sensor = makeNamedSensor(displayName);
    if (startsWith(displayName, kMagnetometerName)) {
        sensor->name = kMagnetometerName;
    }
    sensor->scaleMatrix = identity(3);
    sensor->axisMapping = identity(3);
    return sensor;
}

simulator::RecordingOptions quietOptions() {
    simulator::RecordingOptions options;
    options.secondary = true;
    options.hinge = "LEFT";
    options.perfect = true;
    options.noiseG = options.noiseDps = options.noiseMg = 0.0;
    options.hand = {0.0, 0.0, 0.0};
    return options;
}

// The perfect sensors of a device that has been led through the Full flow by a steady hand.
class FullRun {
  public:
    FullRun() : run(FlowType::Full) {
        run.process.stageCount = 7;
        for (const simulator::StillStage& stage : recording().truth.stages) {
            run.process.segmentTimes.push_back(stage.begin);
            run.process.segmentTimes.push_back(stage.end);
        }
        for (const std::string suffix : {"", "_2"}) {
            for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
                add(name + suffix);
            }
        }
    }

    // The text of the CalibrationException of checkCalibration; "" if there is none.
    std::string failure(SelectedClasses selected = kAll) const {
        try {
            checks(selected).checkCalibration();
        } catch (const CalibrationException& exception) {
            return exception.what();
        }
        return "";
    }

    CrossSensorChecks checks(SelectedClasses selected = kAll) const {
        std::vector<std::shared_ptr<Sensor>> list;
        for (const auto& [name, sensor] : sensors) {
            list.push_back(sensor);
        }
        return {list, selected, run};
    }

    // Makes the mean of the first position so long that the tracked vector is far off, without
    // turning it.
    void lengthenMean(const std::string& name) {
        InertialSensor& sensor = *sensors.at(name);
        sensor.stageMeans.setRow(0, row(sensor.stageMeans, 0) * 5.0);
    }

    // Makes the field of the second position run along gravity.
    void turnField(const std::string& suffix) {
        const Vector gravity = row(sensors.at("Accelerometer" + suffix)->stageMeans, 1);
        sensors.at("Magnetometer" + suffix)->stageMeans.setRow(1, gravity * 480.0);
    }

    MotionReplay run;
    std::map<std::string, std::shared_ptr<InertialSensor>> sensors;

  private:
    static const simulator::Recording& recording() {
        static const simulator::Recording made = simulator::record(quietOptions());
        return made;
    }

    void add(const std::string& displayName) {
        const auto sensor = makePerfectSensor(displayName);
        sensor->setManager(&run);
        sensor->hinge = static_cast<std::uint8_t>(Hinge::left);
        for (const simulator::Row& row : recording().rows.at(displayName)) {
            sensor->bufferedData.push_back(sampleOf(row));
        }
        if (const auto acc = std::dynamic_pointer_cast<Accelerometer>(sensor)) {
            acc->buildExpectedValues();
        }
        if (sensor->name != kGyroscopeName) {
            sensor->setStageRows();
            sensor->computeStageStatistics();
        }
        sensors[displayName] = sensor;
    }
};

const std::string kStart = "Calibration failed. Reason: ";
const std::string kDip = "Calculated dip angle is too high, check magnetic environment.\n";
const std::string kDip2 =
    "Calculated dip angle by acc_2 and mag_2 is too high, check magnetic environment.\n";
const std::string kMagGyro =
    "Disagreement between magnetometer and gyroscope - check magnetic environment.\n";
const std::string kMagGyro2 =
    "Disagreement between magnetometer_2 and gyroscope_2 - check magnetic environment.\n";
const std::string kAccGyro = "Disagreement between accelerometer and gyroscope.\n";
const std::string kAccGyro2 = "Disagreement between accelerometer_2 and gyroscope_2.\n";
const std::string kAcc2Gyro = "Disagreement between accelerometer_2 and gyroscope.\n";

TEST(CrossSensorChecksTest, SensorsThatAgreePass) {
    FullRun test;
    EXPECT_EQ(test.failure(), "");
    for (const std::string suffix : {"", "_2"}) {
        const InertialSensor& acc = *test.sensors.at("Accelerometer" + suffix);
        const InertialSensor& gyro = *test.sensors.at("Gyroscope" + suffix);
        const InertialSensor& mag = *test.sensors.at("Magnetometer" + suffix);
        EXPECT_LT(CrossSensorChecks::dipAngleSpread(acc, mag), 0.1);
        // What is left is the turn of one step, and the force that moves the device.
        EXPECT_LT(test.checks().rotationDifference(gyro, acc, identity(3)), 0.1);
        EXPECT_LT(test.checks().rotationDifference(gyro, mag, identity(3)), 20.0);
    }
    for (const auto& [name, sensor] : test.sensors) {
        EXPECT_EQ(reportOf(*sensor), "");
    }
}

TEST(CrossSensorChecksTest, TheHalvesAreAlignedByWhatTheirAccelerometersShouldRead) {
    FullRun test;
    const InertialSensor& gyro = *test.sensors.at("Gyroscope");
    const InertialSensor& acc2 = *test.sensors.at("Accelerometer_2");
    const Matrix alignment = test.sensors.at("Accelerometer")->alignToExpected(acc2.expectedValues);
    EXPECT_LT(test.checks().rotationDifference(gyro, acc2, alignment), 0.1);
    EXPECT_GT(test.checks().rotationDifference(gyro, acc2, identity(3)), 0.5);
}

TEST(CrossSensorChecksTest, EachDisagreementIsNamedAndReported) {
    struct Case {
        void (*spoil)(FullRun& test);
        std::string reason;
        std::string reporter;
        std::string parameter;
        std::string item;
    };
    const std::vector<Case> cases = {
        {[](FullRun& test) { test.turnField(""); }, kDip, "Magnetometer", "Dip Angle",
         "!Dip angle value! DipAngle"},
        {[](FullRun& test) { test.turnField("_2"); }, kDip2, "Magnetometer_2", "Dip Angle",
         "!Dip angle value acc_2 mag_2! DipAngle"},
        {[](FullRun& test) { test.lengthenMean("Magnetometer"); }, kMagGyro, "Magnetometer",
         "Mag-Gyro Diff", "!Gyro & Magnetometer difference! Gyro-Mag diff"},
        {[](FullRun& test) { test.lengthenMean("Magnetometer_2"); }, kMagGyro2, "Magnetometer_2",
         "Mag-Gyro Diff", "!Gyro_2 & Magnetometer_2 difference! Gyro-Mag diff"},
        {[](FullRun& test) { test.lengthenMean("Accelerometer"); }, kAccGyro, "Accelerometer",
         "Gyro-Accel Diff", "!Gyro & Accelerometer difference! Gyro-Accel diff"},
        {[](FullRun& test) {
             test.sensors.erase("Gyroscope");
             test.lengthenMean("Accelerometer_2");
         },
         kAccGyro2, "Accelerometer_2", "Gyro-Accel Diff",
         "!Gyro_2 & Accelerometer_2 difference! Gyro-Accel diff"},
        {[](FullRun& test) {
             test.sensors.erase("Gyroscope_2");
             test.lengthenMean("Accelerometer_2");
         },
         kAcc2Gyro, "Accelerometer_2", "Gyro-Accel_2 Diff",
         "!Gyro & Accelerometer_2 difference! Gyro-Accel_2 diff"},
    };
    for (const Case& one : cases) {
        FullRun test;
        one.spoil(test);
        EXPECT_EQ(test.failure(), kStart + one.reason);
        const std::string report = reportOf(*test.sensors.at(one.reporter));
        EXPECT_TRUE(contains(report, "Success=false")) << report;
        EXPECT_TRUE(
            contains(report, "FailureParameter=" + one.parameter + "](" + one.item + "(Values('"))
            << report;
    }
}

TEST(CrossSensorChecksTest, TheReportShowsTheFirstDisagreementTheMessageAll) {
    FullRun test;
    test.lengthenMean("Accelerometer");
    test.turnField("_2");
    test.lengthenMean("Accelerometer_2");
    EXPECT_EQ(test.failure(), kStart + kDip2 + kAccGyro + kAccGyro2 + kAcc2Gyro);
    EXPECT_TRUE(contains(reportOf(*test.sensors.at("Magnetometer_2")), "FailureParameter"));
    EXPECT_EQ(reportOf(*test.sensors.at("Accelerometer")), "");
    EXPECT_EQ(reportOf(*test.sensors.at("Accelerometer_2")), "");
}

TEST(CrossSensorChecksTest, OnlySelectedClassesAreCompared) {
    FullRun test;
    for (const std::string suffix : {"", "_2"}) {
        test.turnField(suffix);
        test.lengthenMean("Accelerometer" + suffix);
        test.lengthenMean("Magnetometer" + suffix);
    }
    EXPECT_EQ(test.failure({true, false, false}), "");
    EXPECT_EQ(test.failure({true, true, false}), kStart + kAccGyro + kAccGyro2 + kAcc2Gyro);
    EXPECT_EQ(test.failure({false, true, true}), kStart + kMagGyro + kMagGyro2);
    EXPECT_EQ(test.failure({true, false, true}), kStart + kDip + kDip2);
    EXPECT_EQ(test.failure(),
              kStart + kDip + kDip2 + kMagGyro + kMagGyro2 + kAccGyro + kAccGyro2 + kAcc2Gyro);
    for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
        test.sensors.erase(name);
    }
    EXPECT_EQ(test.failure(), kStart + kDip2 + kMagGyro2 + kAccGyro2);
}

TEST(CrossSensorChecksTest, OnlyAValueAboveTheLimitFails) {
    FullRun test;
    // The device lies still, so the accelerometer is off by what its mean is.
    for (Sample& sample : test.sensors.at("Accelerometer")->bufferedData) {
        sample.values = {0.0, 0.0, 1.0};
    }
    for (Sample& sample : test.sensors.at("Gyroscope")->bufferedData) {
        sample.values = Vector(3);
    }
    Matrix& means = test.sensors.at("Accelerometer")->stageMeans;
    test.sensors.erase("Accelerometer_2");
    const auto failureWith = [&](double z) {
        means = Matrix(std::vector<Vector>(4, Vector{0.0, 0.0, z}));
        return test.failure({true, true, false});
    };
    EXPECT_EQ(failureWith(2.0), "");
    EXPECT_EQ(failureWith(2.000001), kStart + kAccGyro);
    EXPECT_EQ(failureWith(std::numeric_limits<double>::quiet_NaN()), kStart + kAccGyro);
}

// A turn about the field's axis or about gravity shows nothing; the primary magnetometer alone is
// followed through the turns as well as through the tilts.
TEST(CrossSensorChecksTest, OnlyThePrimaryMagnetometerIsFollowedThroughTheTurns) {
    FullRun test;
    const std::vector<double>& times = test.run.segmentTimes();
    InertialSensor& gyro = *test.sensors.at("Gyroscope");
    for (Sample& sample : gyro.bufferedData) {
        for (const std::size_t turn : {1u, 5u, 9u}) {
            if (sample.timestamp > times[turn] && sample.timestamp < times[turn + 1]) {
                sample.values = Vector(3);
            }
        }
    }
    InertialSensor& mag = *test.sensors.at("Magnetometer");
    EXPECT_GT(test.checks().rotationDifference(gyro, mag, identity(3)), 100.0);
    mag.luid.InstanceId = 1;
    EXPECT_LT(test.checks().rotationDifference(gyro, mag, identity(3)), 20.0);
}

TEST(CrossSensorChecksTest, ASensorWithoutSamplesEndsTheChecks) {
    FullRun test;
    test.turnField("");
    test.sensors.at("Accelerometer")->bufferedData.clear();
    EXPECT_EQ(test.failure(), "buffered data of sensorAccelerometer is empty");
    test.run.process.segmentTimes.resize(12);
    EXPECT_EQ(test.failure({false, true, true}), "Internal error");
}

// ---- compareRotation ----

// Sensors of a test run whose gyroscope has seen a quarter turn about Z between its stages.
class CompareRotationTest : public ::testing::Test {
  protected:
    CompareRotationTest() : run(FlowType::FourSteps, RunCommand::TestCalibration) {
        run.process.stageCount = 2;
        gyro->testRotations = {rotationMatrix({0.0, 0.0, kPi / 2.0})};
        for (const auto& sensor : {acc, mag}) {
            sensor->stageMeans = Matrix(2, 3);
        }
        acc->stageMeans.setRow(0, {0.0, 1.0, 0.0});
        acc->stageMeans.setRow(1, {1.0, 0.0, 0.0});
    }

    ~CompareRotationTest() override { testingConfig() = TestingConfig(); }

    bool compare(const std::shared_ptr<Sensor>& a, const std::shared_ptr<Sensor>& g,
                 const std::shared_ptr<Sensor>& m) {
        ::testing::internal::CaptureStdout();
        const bool passed = CrossSensorChecks({}, kAll, run).compareRotation(a, g, m);
        platform::Console::instance().flush();
        printed = ::testing::internal::GetCapturedStdout();
        return passed;
    }

    MotionReplay run;
    std::shared_ptr<InertialSensor> acc = makePerfectSensor("Accelerometer");
    std::shared_ptr<Gyroscope> gyro =
        std::dynamic_pointer_cast<Gyroscope>(makePerfectSensor("Gyroscope"));
    std::shared_ptr<InertialSensor> mag = makePerfectSensor("Magnetometer");
    std::string printed;
};

TEST_F(CompareRotationTest, NothingToCompareAgrees) {
    EXPECT_TRUE(compare(acc, nullptr, mag));
    EXPECT_TRUE(compare(nullptr, gyro, nullptr));
    EXPECT_EQ(reportOf(*gyro), "");
}

TEST_F(CompareRotationTest, OneStageHasNoSteps) {
    run.process.stageCount = 1;
    EXPECT_TRUE(compare(acc, gyro, mag));
    EXPECT_TRUE(contains(reportOf(*gyro), "(Performing_TestCompareRotation_Gyro_Accel)"));
}

TEST_F(CompareRotationTest, TheGyroscopeTurnsTheLaterMeanBackOntoTheEarlier) {
    EXPECT_TRUE(compare(acc, gyro, mag));
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(contains(
        reportOf(*gyro),
        "Performing_TestCompareRotation_Gyro_Accel(!step 1! !difference between gyro and accel! "
        "Angles[Rows=1 Cols=1](Values('0.000000;')) !The difference that is expected at a "
        "perfectly calibrated system! Expected[Rows=1 Cols=1](Values('0.000000;')) "
        "!rotation_agreement_degrees! threshold(Values('5.000000')) !: PASSED!)"));
}

TEST_F(CompareRotationTest, AnAngleOfTheThresholdPasses) {
    acc->stageMeans.setRow(0, {1.0, 0.0, 0.0});
    gyro->testRotations = {rotationMatrix({0.0, 0.0, 0.1})};
    const double angle =
        angleBetween(gyro->testRotations[0] * Vector{1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}) *
        57.29577951308232;
    testingConfig().rotation_agreement_degrees_acc = angle;
    EXPECT_TRUE(compare(acc, gyro, mag));
    testingConfig().rotation_agreement_degrees_acc = std::nextafter(angle, 0.0);
    EXPECT_FALSE(compare(acc, gyro, mag));
    EXPECT_TRUE(contains(printed, "Error in Gyroscope step 1 Gravity rotation test\n"));
    EXPECT_TRUE(run.failures.empty());
    EXPECT_TRUE(contains(reportOf(*gyro), "! FAILED!)"));
}

// For some of these rounding carries the cosine beyond 1.
TEST_F(CompareRotationTest, AgreementToTheLastDigitPasses) {
    constexpr std::uint64_t kSeed = 7;
    RandomNumbers random(kSeed);
    gyro->testRotations = {identity(3)};
    for (int i = 0; i < 100; ++i) {
        const Vector mean = random.unitVector();
        acc->stageMeans.setRow(0, mean);
        acc->stageMeans.setRow(1, mean);
        EXPECT_TRUE(compare(acc, gyro, nullptr)) << "seed " << kSeed << " number " << i;
    }
}

TEST_F(CompareRotationTest, WhatIsMissingFails) {
    gyro->testRotations.clear();
    EXPECT_FALSE(compare(acc, gyro, nullptr));
    gyro->testRotations = {identity(3)};
    acc->stageMeans = Matrix(1, 3);
    EXPECT_FALSE(compare(acc, gyro, nullptr));
}

// The magnetometer's means lie on a circle about a point that only its samples tell.
TEST_F(CompareRotationTest, TheFieldIsTakenFromTheMiddleOfItsCircle) {
    const Vector center{900.0, -400.0, 250.0};
    for (int i = 0; i < 300; ++i) {
        const double angle = 2.0 * kPi * i / 300.0;
        const Vector field{200.0 * std::cos(angle), 200.0 * std::sin(angle), 0.0};
        mag->bufferedData.push_back({10.0 * i, center + field});
    }
    mag->stageMeans.setRow(0, center + Vector{0.0, 200.0, 0.0});
    mag->stageMeans.setRow(1, center + Vector{200.0, 0.0, 0.0});
    EXPECT_TRUE(compare(nullptr, gyro, mag));

    const double off = 16.0 * kPi / 180.0;
    mag->stageMeans.setRow(1, center + Vector{200.0 * std::cos(off), 200.0 * std::sin(off), 0.0});
    EXPECT_FALSE(compare(nullptr, gyro, mag));
    EXPECT_TRUE(contains(printed, "Error in Gyroscope step 1 Magnetometer rotation test\n"));
    const std::string report = reportOf(*gyro);
    EXPECT_TRUE(contains(report,
                         "Performing_TestCompareRotation_Gyro_Mag(!step 1! "
                         "!difference between gyro and mag! Angles"));
    EXPECT_TRUE(contains(report, "threshold(Values('15.000000'))"));
}

TEST(CompareRotationRecordingTest, AGyroscopeThatReadsTooMuchDisagrees) {
    for (const bool faulty : {false, true}) {
        simulator::RecordingOptions options;
        options.flow = simulator::Flow::FourSteps;
        options.sensors = "AG";
        options.perfect = true;
        options.fault = faulty ? simulator::Fault::GyroScale10 : simulator::Fault::None;
        MotionReplay run(FlowType::FourSteps, RunCommand::TestCalibration);
        const auto acc = makeNamedSensor("Accelerometer");
        const auto gyro = makeNamedSensor("Gyroscope");
        run.add(acc);
        run.add(gyro);
        ASSERT_TRUE(run.play(simulator::record(options)));
        EXPECT_TRUE(acc->testCalibration());
        EXPECT_TRUE(gyro->testCalibration());
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(CrossSensorChecks({}, kAll, run).compareRotation(acc, gyro, nullptr), !faulty);
        platform::Console::instance().flush();
        ::testing::internal::GetCapturedStdout();
    }
}

}  // namespace

}  // namespace tavocal::testing
