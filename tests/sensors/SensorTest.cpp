#include "sensors/Sensor.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "sensors/GenericSensor.h"
#include "sensors/InertialSensor.h"
#include "support/MessageOf.h"
#include "support/MotionReplay.h"

namespace tavocal::test {

namespace {

std::shared_ptr<Sensor> sensorOf(int type, std::uint8_t flags = kStaticFlag) {
    return makeSensor({static_cast<std::uint16_t>(type), 0, 0, 0, flags});
}

// What accepting a block of this format and size ends with.
std::string verdictOn(const Sensor& sensor, std::uint8_t format, std::size_t size,
                      std::uint8_t vendorLength = 0) {
    CalibrationBlock block(std::max<std::size_t>(size, 39));
    block[0] = format;
    block[38] = vendorLength;
    block.resize(size);
    return messageOf<CalibrationException>([&] { sensor.validateCalibrationData(block); });
}

}  // namespace

TEST(SensorTest, TypeDecidesTheClass) {
    struct Case {
        int type;
        std::string name;
        int kind;
        Unit samplingUnit, firmwareUnit;
        int rawDivisor, values;
    };
    for (const Case& c :
         {Case{0x41, "AmbientLightSensor", 2, Unit::lux, Unit::lux, 1000, 1},
          Case{0x73, "Accelerometer", 1, Unit::g0, Unit::microg0, 1000000, 3},
          Case{0x76, "Gyroscope", 1, Unit::degPerSec, Unit::degPerSec5, 100000, 3},
          Case{0x7D, "Magnetometer", 1, Unit::milliGauss, Unit::microGauss, 1000, 3},
          Case{0x20F, "Magnetometer", 1, Unit::milliGauss, Unit::microGauss, 1000, 3},
          Case{0x71, "", 1, Unit::unknown, Unit::unknown, 100000, 3},
          Case{0x70, "", 0, Unit::unknown, Unit::unknown, 100000, 0}}) {
        SCOPED_TRACE(c.type);
        const auto sensor = sensorOf(c.type);
        EXPECT_EQ(sensor->getDisplayName(), c.name);
        EXPECT_EQ(sensor->sensorKind, c.kind);
        EXPECT_EQ(sensor->samplingUnit, c.samplingUnit);
        EXPECT_EQ(sensor->firmwareUnit, c.firmwareUnit);
        EXPECT_EQ(sensor->rawDivisor, c.rawDivisor);
        EXPECT_EQ(sensor->valuesPerSample, c.values);
        EXPECT_EQ(sensor->isCalibratable(), !c.name.empty());
        EXPECT_TRUE(sensor->isTestable());
        EXPECT_FALSE(sensorOf(c.type, 1)->isCalibratable() || sensorOf(c.type, 1)->isTestable());
    }
    for (const int type :
         {0x71, 0x72, 0x74, 0x75, 0x77, 0x7C, 0x7E, 0x81, 0x8D, 0x241, 0x242, 0x24F}) {
        EXPECT_EQ(sensorOf(type)->sensorKind, Sensor::kInertialKind) << type;
    }
    for (const int type : {0, 0x40, 0x42, 0x70, 0x7F, 0x80, 0x8E, 0x240, 0x243, 0x24E, 0x250}) {
        EXPECT_EQ(sensorOf(type)->sensorKind, Sensor::kGenericKind) << type;
    }
    EXPECT_EQ(messageOf<CalibrationException>([] { sensorOf(0)->run(); }), "Internal error");
}

TEST(SensorTest, BlockHasTheFormatAndSizeOfItsSensor) {
    const std::string badSize = "Invalid calibration data size";
    struct Case {
        int type;
        std::uint8_t flags, format;
        std::size_t least, most;
        std::string name;
    };
    for (const Case& c :
         {Case{0x73, 2, 0, 40, 40, "Accelerometer"}, Case{0x73, 1, 1, 12, 66, "Accelerometer"},
          Case{0x76, 1, 2, 71, 71, "Gyroscope"}, Case{0x76, 3, 2, 71, 71, "Gyroscope"},
          Case{0x76, 2, 0, 40, 40, "Gyroscope"}}) {
        SCOPED_TRACE(c.name + std::to_string(c.flags));
        const auto sensor = sensorOf(c.type, c.flags);
        EXPECT_EQ(verdictOn(*sensor, c.format, c.least), kNoFailure);
        EXPECT_EQ(verdictOn(*sensor, c.format, c.most), kNoFailure);
        EXPECT_EQ(verdictOn(*sensor, c.format, c.least - 1), badSize);
        EXPECT_EQ(verdictOn(*sensor, c.format, c.most + 1), badSize);
        EXPECT_EQ(verdictOn(*sensor, c.format, c.most + 4, 4), kNoFailure);  // vendor data
        EXPECT_EQ(verdictOn(*sensor, c.format, c.most + 4, 3), badSize);
        EXPECT_EQ(verdictOn(*sensor, c.format, 0), badSize);
        const std::string format = "Unsupported format of " + c.name + " Sensor calibration data";
        EXPECT_EQ(verdictOn(*sensor, 127, c.least), format);
        EXPECT_EQ(verdictOn(*sensor, 3, c.most + 4, 4), format);
        EXPECT_EQ(verdictOn(*sensor, 128, 1), kNoFailure);
    }
    EXPECT_EQ(verdictOn(*sensorOf(0x70), 99, 1), kNoFailure);
    EXPECT_EQ(verdictOn(*sensorOf(0x70), 99, 0), badSize);
    EXPECT_EQ(verdictOn(*sensorOf(0x71, 0), 0, 1), kNoFailure);
}

TEST(SensorTest, WhiteNoiseGoesIntoTheLoadedBlock) {
    const auto sensor = sensorOf(0x73, kDynamicFlag);
    const auto failure = [](Sensor& s) {
        return messageOf<CalibrationException>([&] { s.setWhiteNoise(66051.9); });
    };
    EXPECT_EQ(failure(*sensorOf(0x73, 0)), "Internal error. Invalid operation was performed");
    EXPECT_EQ(failure(*sensor), "Error. No original scaling for dynamic sensor Accelerometer");
    sensor->setCalibrationData({1, 7, 1, 1, 1, 1, 5, 5, 5, 5, 5, 5});
    EXPECT_EQ(failure(*sensor), kNoFailure);
    EXPECT_EQ(sensor->calibrationToWrite, (CalibrationBlock{1, 7, 3, 2, 1, 0, 5, 5, 5, 5, 5, 5}));
    EXPECT_EQ(sensor->getOriginalCalibration()[2], 1);
    sensor->originalCalibration.resize(5);
    EXPECT_EQ(failure(*sensor), "Invalid calibration data size");
}

TEST(SensorReportTest, CollectsResultsBelowTheSensor) {
    const auto sensor = makeNamedSensor("Magnetometer_2");
    EXPECT_FALSE(sensor->report.exists());
    sensor->report.beginSubtree("Part");
    EXPECT_TRUE(sensor->report.exists());
    sensor->report.setAttribute("Inner", "1");
    sensor->report.setRootAttribute("Success", "true");
    sensor->report.addMatrix(Matrix(2, 1, {1.0, -2.5}), "Square", "");
    sensor->report.addScalar(1.0 / 3.0, "Third", "a third");
    sensor->report.endSubtree();
    sensor->report.addAttributed("A", "", "text", "Key", "", "", "value");
    sensor->report.addAttributed("B", "both", "text", "K", "1", "L", "2");
    sensor->report.setAttribute("Outer", "2");
    EXPECT_EQ(reportOf(*sensor),
              "Sensor[LUID=020f000000000102 Type=Magnetometer SamplingUnit=milliGauss Success=true "
              "IsPrimary=false Outer=2](Part[Inner=1](Square[Rows=2 Cols=1](Values('1.000000;"
              "-2.500000;')) !a third! Third(Values('0.333333'))) A(Values('text')) !both! "
              "B[K=1 L=2](Values('text')))");
}

TEST(LuidTest, TextAndBytesCarryEveryField) {
    const LUID luid = {0x1234, 0x5678, 0x9ABC, 0xDE, 0xF0};
    EXPECT_EQ(luidText(luid), "123456789abcdef0");
    EXPECT_EQ(luidBytes(luid)[1], 0x12);
    EXPECT_EQ(luidFromBytes(luidBytes(luid).data()), luid);
    LUID parsed;
    EXPECT_TRUE(parseLuidText("123456789ABCdef0", parsed));
    for (const char* const text : {"123456789abcdef", "123456789abcdef01", "123456789abcdeg0"}) {
        EXPECT_FALSE(parseLuidText(text, parsed)) << text;
    }
    EXPECT_EQ(parsed, luid);
}

}  // namespace tavocal::test
