#include "formats/SensorXml.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "formats/SensorXmlFixture.h"
#include "xml/XmlElement.h"

namespace tavocal {
namespace {

using test::repeated;
using test::sensorText;

struct SensorCase {
    LUID luid;
    std::string content;
    std::string failure;
};

const std::string kSteps = "<Steps NumOfSteps='3'/>";

class SensorXmlTest : public test::SensorXmlFixture {};

TEST_F(SensorXmlTest, ReadsIdentity) {
    const auto sensor = file.loadSensor(
        "<Sensor Flags='255' InstanceId='255' VendorId=' 65535' SubTypeId='+7' SensorTypeId=''>"
        "<!-- a note --><CalibrationData FormatId='200' Version='255'><!-- a note -->"
        "<OEMCustomData DataLength='0'>whatever</OEMCustomData></CalibrationData></Sensor>");
    EXPECT_EQ(sensor->getLuid(), (LUID{0, 65535, 7, 255, 255}));
    EXPECT_EQ(sensor->calibrationToWrite, (CalibrationBlock{200, 255}));
    EXPECT_EQ(file.firmware.requestCount(), 0U);
}

TEST_F(SensorXmlTest, ChecksAttributesInOrder) {
    const std::string attributes =
        " SensorTypeId='1' SubTypeId='1' VendorId='1' InstanceId='1' Flags='1'";
    const std::string data = "<CalibrationData Version='1' FormatId='1'/>";
    const std::string bad = "XML parsing error. ";
    const auto replaced = [](std::string text, const std::string& part, const std::string& with) {
        return text.replace(text.find(part), part.size(), with);
    };
    for (const auto& [name, limit] :
         std::vector<std::pair<std::string, std::string>>{{"SensorTypeId", "65536"},
                                                          {"SubTypeId", "65536"},
                                                          {"VendorId", "65536"},
                                                          {"InstanceId", "256"},
                                                          {"Flags", "256"},
                                                          {"Version", "256"},
                                                          {"FormatId", "256"}}) {
        const std::string text = "<Sensor" + attributes + ">" + data + "</Sensor>";
        const std::string old = " " + name + "='1'";
        const std::string node =
            name == "Version" || name == "FormatId" ? "CalibrationData" : "Sensor";
        for (const std::string& value : {limit, std::string("-1")}) {
            EXPECT_EQ(file.sensorFailure(replaced(text, old, " " + name + "='" + value + "'")),
                      bad + name + " has invalid value. Line: " + node);
        }
        EXPECT_EQ(file.sensorFailure(replaced(text, old, "")),
                  bad + "Missing field " + name + ". Line: " + node);
        EXPECT_EQ(file.sensorFailure(replaced(text, old, " " + name + "='x'")),
                  test::kNoNumber + "x is not a valid number");
    }
    EXPECT_EQ(file.sensorFailure("<Sensor" + attributes + "><Data/></Sensor>"),
              "Failed to load XML input file. Invalid CalibrationData node name.");
}

TEST_F(SensorXmlTest, ChecksWhatSensorCanHold) {
    const std::string bad = "XML parsing error. ";
    const std::string custom = "<OEMCustomData DataLength='0'/>";
    const LUID both = {0x73, 0, 0, 0, kStaticFlag | kDynamicFlag};
    const std::string notInertial =
        " was not recognized as Inertial sensor. Invalid calibration format";
    for (const SensorCase& c : std::vector<SensorCase>{
             {test::kGeneric, "<Offset/>", "Sensor 1234000000000002" + notInertial},
             {test::kAmbientLight, "<WhiteNoise/>", "Sensor 0041000000000002" + notInertial},
             {test::kAmbientLight, kSteps + "<Matrix/>", "Sensor 0041000000000002" + notInertial},
             {test::kStaticAccelerometer, "<WhiteNoise/>",
              "Sensor 0073000100020002 has invalid format"},
             {test::kPlainInertial, "<WhiteNoise/><Matrix/>",
              "Sensor 0072000000000000 has invalid format"},
             {test::kDynamicAccelerometer, "<AxisMapping/>",
              "Sensor 0073000100020001 has invalid format"},
             {test::kDynamicAccelerometer, "<matrix/>",
              "Sensor 0073000100020001 has invalid format"},
             {test::kDynamicAccelerometer, "<Scale/>",
              "Sensor 0073000100020001 has invalid format"},
             {both, "<ScaleFactor/>", "Sensor 0073000000000003 has invalid format"},
             {test::kStaticAccelerometer, kSteps,
              "Sensor 0073000100020002 was not recognized as Ambient Light sensor. Invalid "
              "calibration format. Line: CalibrationData"},
             {test::kStaticAccelerometer, "<Offset/>" + custom,
              "Multiple data for sensor 0073000100020002. Line: CalibrationData"},
             {test::kAmbientLight, kSteps + custom,
              "Multiple data for sensor 0041000000000002. Line: CalibrationData"},
             {test::kAmbientLight, "<Multiplier Divider='1'>1</Multiplier>",
              "No calibration data was specified for sensor 0041000000000002. Line: "
              "CalibrationData"},
         }) {
        EXPECT_EQ(file.sensorFailure(sensorText(c.luid, 0, c.content)), bad + c.failure);
    }
    EXPECT_EQ(file.firmware.requestCount(), 0U);
}

TEST_F(SensorXmlTest, GenericSensorHasNoFormatOfItsOwn) {
    try {
        makeSensor(test::kGeneric)->readCalibrationXml(XmlElement(L"CalibrationData"), 0, 0);
        FAIL();
    } catch (const CalibrationException& failure) {
        EXPECT_STREQ(failure.what(), "Error. No calibration data format is available");
    }
}

TEST_F(SensorXmlTest, ChecksCustomData) {
    const std::string mismatch =
        "XML parsing error. BinData size does not match declared length. Line: OEMCustomData";
    const auto custom = [](const std::string& length, const std::string& text) {
        return "<OEMCustomData DataLength='" + length + "'>" + text + "</OEMCustomData>";
    };
    expectFailures(
        test::kGeneric, 200,
        {{custom("2", "abc"), mismatch},
         {custom("1", "abcd"), mismatch},
         {custom("1", ""), mismatch},
         {custom("1", "0g"), mismatch},
         {custom("1", " 1"), mismatch},
         {custom("2", "0x12"), mismatch},
         {custom("1", "\xC3\xA9\xC3\xA9"), mismatch},
         {custom("-1", ""), mismatch},
         {custom("65536", repeated("0", 131072)), mismatch},
         {custom("99999999999", ""), test::kNoNumber + "99999999999 is not a valid number"},
         {"<OEMCustomData>ab</OEMCustomData>",
          "XML parsing error. Missing field DataLength. Line: OEMCustomData"}});
    EXPECT_EQ(blockOf(test::kGeneric, 0, custom("2", "aBFf")),
              (CalibrationBlock{0, 7, 0xAB, 0xFF}));
    EXPECT_EQ(blockOf(test::kGeneric, 0, custom("", "xyz")), (CalibrationBlock{0, 7}));
    EXPECT_EQ(blockOf(test::kGeneric, 0, custom("65535", repeated("0", 131070))).size(), 65537U);

    const std::string wrongSize = "Invalid calibration data size";
    expectFailures(test::kStaticAccelerometer, 0, {{custom("1", "ab"), wrongSize}});
    expectFailures(test::kStaticAccelerometer, 1,
                   {{custom("38", repeated("00", 38)),
                     "Unsupported format of Accelerometer Sensor calibration data"}});
    expectFailures(test::kAmbientLight, 1,
                   {{custom("15", repeated("03", 15)), wrongSize},
                    {custom("65", repeated("03", 65)), wrongSize},
                    {custom("16", repeated("02", 16)),
                     "Invalid Ambient Light Sensor calibration data: not enough ALR steps"}});
    EXPECT_EQ(blockOf(test::kStaticAccelerometer, 0, custom("38", repeated("00", 38))).size(), 40U);
}

}  // namespace
}  // namespace tavocal
