#include "app/CrossSensorChecks.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/FormFactor.h"
#include "sensors/Accelerometer.h"
#include "sensors/SensorTypes.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

constexpr SelectedClasses kAll{true, true, true};

std::shared_ptr<InertialSensor> makePerfectSensor(const std::string& displayName) {
    const auto sensor = makeNamedSensor(displayName);
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

}  // namespace

}  // namespace tavocal::test
