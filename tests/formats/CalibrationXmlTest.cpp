#include "formats/CalibrationXml.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "sensors/Sensor.h"
#include "support/TempFolder.h"

namespace tavocal {
namespace {

using Sensors = std::vector<std::shared_ptr<Sensor>>;

// The block and the entry of a secondary accelerometer, with two bytes of vendor data.
const CalibrationBlock kStaticBlock = {
    0x00, 0x01,                                                              // FormatId, Version
    0x0C, 0x00, 0x00, 0x00, 0xD8, 0xFF, 0xFF, 0xFF, 0x07, 0x00, 0x00, 0x00,  // offset
    0x00, 0x04, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00,  // matrix
    0x00, 0x00, 0xFF, 0x7F, 0x00, 0x80,                                      //
    0xFF, 0xFF,                                                              // ScaleFactor
    0x0D, 0x01, 0x01, 0x00,                                                  // axis mapping
    0x02, 0x00, 0xAB, 0x0F};                                                 // vendor data

const std::string kStaticFile =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
    "<Tavo>\r\n"
    "    <Calibration>\r\n"
    "        <Sensor SensorTypeId=\"115\" SubTypeId=\"0\" VendorId=\"1\" InstanceId=\"1\""
    " Flags=\"2\">\r\n"
    "            <!--Below are the calibration parameters to be applied to raw readings. Note that"
    " it is not an issue that after calibration, sensor readings might exceed original range.-->"
    "\r\n"
    "            <CalibrationData Version=\"1\" FormatId=\"0\">\r\n"
    "                <!--Axis mapping matrix maps the raw axes on sensor, towards axis system on"
    " device after calibration.-->\r\n"
    "                <AxisMapping>\r\n"
    "                    <XX>1</XX>\r\n"
    "                    <XY>-1</XY>\r\n"
    "                    <XZ>0</XZ>\r\n"
    "                    <YX>0</YX>\r\n"
    "                    <YY>1</YY>\r\n"
    "                    <YZ>0</YZ>\r\n"
    "                    <ZX>0</ZX>\r\n"
    "                    <ZY>0</ZY>\r\n"
    "                    <ZZ>1</ZZ>\r\n"
    "                </AxisMapping>\r\n"
    "                <!--This applies to the raw readings so they will be scaled to get the"
    " calibrated values. The actual scale is the values in matrix divided by the ScaleFactor.-->"
    "\r\n"
    "                <Matrix>\r\n"
    "                    <Mat11>1024</Mat11>\r\n"
    "                    <Mat12>0</Mat12>\r\n"
    "                    <Mat13>-1</Mat13>\r\n"
    "                    <Mat21>0</Mat21>\r\n"
    "                    <Mat22>1024</Mat22>\r\n"
    "                    <Mat23>0</Mat23>\r\n"
    "                    <Mat31>0</Mat31>\r\n"
    "                    <Mat32>32767</Mat32>\r\n"
    "                    <Mat33>-32768</Mat33>\r\n"
    "                    <ScaleFactor>65535</ScaleFactor>\r\n"
    "                </Matrix>\r\n"
    "                <!--Offset will be removed from the raw readings to achieve the calibration."
    "-->\r\n"
    "                <Offset>\r\n"
    "                    <OffsetX>12</OffsetX>\r\n"
    "                    <OffsetY>-40</OffsetY>\r\n"
    "                    <OffsetZ>7</OffsetZ>\r\n"
    "                </Offset>\r\n"
    "                <VendorData DataLength=\"2\">ab0f</VendorData>\r\n"
    "            </CalibrationData>\r\n"
    "        </Sensor>\r\n"
    "    </Calibration>\r\n"
    "</Tavo>\r\n";

const LUID kSecondAccelerometer = {0x73, 1, 0, 1, kStaticFlag};

std::shared_ptr<Sensor> sensorWith(const LUID& luid, const CalibrationBlock& original) {
    auto sensor = makeSensor(luid);
    sensor->setCalibrationData(original);
    return sensor;
}

class CalibrationXmlTest : public testing::Test {
  protected:
    std::string saved(const Sensors& sensors, bool useCurrent) const {
        saveCalibrationXml(folder.path("saved.xml"), sensors, useCurrent);
        return test::fileContent(folder.path("saved.xml"));
    }

    const test::TempFolder folder;
};

TEST_F(CalibrationXmlTest, WritesStaticBlock) {
    EXPECT_EQ(saved({sensorWith(kSecondAccelerometer, kStaticBlock)}, true), kStaticFile);
}

}  // namespace
}  // namespace tavocal
