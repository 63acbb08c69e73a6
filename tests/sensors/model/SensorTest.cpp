#include "sensors/model/Sensor.h"

#include "sensors/SensorFactory.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/model/GenericSensor.h"
#include "support/InertialBench.h"

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
    return failureOf([&] { sensor.validateCalibrationData(block); });
}

}  // namespace

TEST(SensorTest, TypeDecidesTheClass) {
    for (const int type :
         {0x71, 0x72, 0x74, 0x75, 0x77, 0x7C, 0x7E, 0x81, 0x8D, 0x241, 0x242, 0x24F}) {
        EXPECT_EQ(sensorOf(type)->sensorKind, SensorKind::Inertial) << type;
    }
    for (const int type : {0, 0x40, 0x42, 0x70, 0x7F, 0x80, 0x8E, 0x240, 0x243, 0x24E, 0x250}) {
        EXPECT_EQ(sensorOf(type)->sensorKind, SensorKind::Generic) << type;
    }
    EXPECT_EQ(failureOf([] { sensorOf(0)->run(); }), "Internal error");
}

TEST(SensorTest, BlockHasTheFormatAndSizeOfItsSensor) {
    const std::string badSize = "Invalid calibration data size";
    using Row = std::tuple<int, std::uint8_t, std::uint8_t, std::size_t, std::size_t>;
    for (const auto& [type, flags, format, least, most] : {Row{0x73, 2, 0, 40, 40},
                                                           {0x73, 1, 1, 12, 66},
                                                           {0x76, 1, 2, 71, 71},
                                                           {0x76, 3, 2, 71, 71},
                                                           {0x76, 2, 0, 40, 40}}) {
        const auto sensor = sensorOf(type, flags);
        SCOPED_TRACE(sensor->name + std::to_string(flags));
        EXPECT_EQ(verdictOn(*sensor, format, least), kNoFailure);
        EXPECT_EQ(verdictOn(*sensor, format, most), kNoFailure);
        EXPECT_EQ(verdictOn(*sensor, format, least - 1), badSize);
        EXPECT_EQ(verdictOn(*sensor, format, most + 1), badSize);
        EXPECT_EQ(verdictOn(*sensor, format, most + 4, 4), kNoFailure);  // vendor data
        EXPECT_EQ(verdictOn(*sensor, format, most + 4, 3), badSize);
        EXPECT_EQ(verdictOn(*sensor, 3, most + 4, 4),
                  "Unsupported format of " + sensor->name + " Sensor calibration data");
        EXPECT_EQ(verdictOn(*sensor, 128, 1), kNoFailure);
    }
    EXPECT_EQ(verdictOn(*sensorOf(0x70), 99, 1), kNoFailure);
    EXPECT_EQ(verdictOn(*sensorOf(0x70), 99, 0), badSize);
    EXPECT_EQ(verdictOn(*sensorOf(0x71, 0), 0, 1), kNoFailure);
}

TEST(SensorTest, WhatASensorDoesNotCheckIsWell) {
    const auto sensor = sensorOf(0x70);
    int axis = 7;
    EXPECT_TRUE(sensor->checkMagPreTest_singleRotation(0, 0, axis));
    EXPECT_EQ(axis, 7);
    EXPECT_TRUE(sensor->checkMagPreTest_threeRotations({}));
    EXPECT_TRUE(sensor->checkMagPreTest_translation());
    EXPECT_FALSE(sensor->supportsRunType(RunCommand::Calibrate));
}

}  // namespace tavocal::test
