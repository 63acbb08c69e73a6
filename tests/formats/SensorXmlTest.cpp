#include "formats/SensorXml.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "formats/CalibrationFile.h"
#include "support/MessageOf.h"
#include "xml/XmlElement.h"

namespace tavocal::test {
namespace {

class SensorXmlTest : public CalibrationFile {};

TEST_F(SensorXmlTest, ReadsIdentity) {
    const auto sensor = load(fileText(
        "<Sensor Flags='255' InstanceId='255' VendorId=' 65535' SubTypeId='+7' SensorTypeId=''>"
        "<!-- a note --><CalibrationData FormatId='255' Version='254'><!-- a note -->"
        "<OEMCustomData DataLength='0'>whatever</OEMCustomData></CalibrationData></Sensor>"));
    EXPECT_EQ(sensor.at(0)->getLuid(), (LUID{0, 65535, 7, 255, 255}));
    EXPECT_EQ(sensor.at(0)->calibrationToWrite, (CalibrationBlock{255, 254}));
    EXPECT_EQ(firmware.requestCount(), 0U);
}

// All that stands behind the attribute at hand is wrong too: the first one counts.
TEST_F(SensorXmlTest, ChecksAttributesInOrder) {
    std::string text = fileText(
        "<Sensor SensorTypeId='-1' SubTypeId='-1' VendorId='-1' InstanceId='-1' Flags='-1'>"
        "<CalibrationData Version='-1' FormatId='-1'/></Sensor>");
    for (const auto& [name, highest] : TextTable{{"SensorTypeId", "65535"},
                                                 {"SubTypeId", "65535"},
                                                 {"VendorId", "65535"},
                                                 {"InstanceId", "255"},
                                                 {"Flags", "255"},
                                                 {"Version", "255"},
                                                 {"FormatId", "255"}}) {
        const bool ofData = name == "Version" || name == "FormatId";
        const std::string line = ofData ? ". Line: CalibrationData" : ". Line: Sensor";
        const auto with = [&, old = name + "='-1'", start = name + "='"](const std::string& value) {
            return replaceAll(text, old, start + value + "'");
        };
        const std::string invalid = "XML parsing error. " + name + " has invalid value" + line;
        EXPECT_EQ(outcomeOf(text), invalid);
        EXPECT_EQ(outcomeOf(with(highest.substr(0, highest.size() - 1) + "6")), invalid);
        EXPECT_EQ(outcomeOf(replaceAll(text, name + "='-1'", "")),
                  "XML parsing error. Missing field " + name + line);
        EXPECT_EQ(outcomeOf(with("x")), "Conversion error. Value x is not a valid number");
        text = with(highest);
    }
    EXPECT_EQ(outcomeOf(replaceAll(text, "CalibrationData", "Data")),
              "Failed to load XML input file. Invalid CalibrationData node name.");
}

TEST_F(SensorXmlTest, WhatASensorCanHold) {
    expectOutcomes(
        R"(
generic 0 <Offset/> => BAD Sensor LUID NOINERTIAL
light 0 <WhiteNoise/> => BAD Sensor LUID NOINERTIAL
light 0 STEPS<Matrix/> => BAD Sensor LUID NOINERTIAL
static 0 <WhiteNoise/> => BAD Sensor LUID has invalid format
plain 0 <WhiteNoise/><Matrix/> => BAD Sensor LUID has invalid format
dynamic 0 <AxisMapping/> => BAD Sensor LUID has invalid format
dynamic 0 <matrix/> => BAD Sensor LUID has invalid format
dynamic 0 <Scale/> => BAD Sensor LUID has invalid format
both 0 <ScaleFactor/> => BAD Sensor LUID has invalid format
static 0 STEPS => BAD Sensor LUID NOLIGHT Line: CalibrationData
static 0 <Offset/>CUSTOM => BAD Multiple data for sensor LUID. Line: CalibrationData
light 0 STEPSCUSTOM => BAD Multiple data for sensor LUID. Line: CalibrationData
light 0 <Multiplier Divider='1'>1</Multiplier> => BAD No calibration data was specified for sensor LUID. Line: CalibrationData
)",
        {{"STEPS", "<Steps NumOfSteps='3'/>"},
         {"CUSTOM", "<OEMCustomData DataLength='0'/>"},
         {"NOINERTIAL", "was not recognized as Inertial sensor. Invalid calibration format"},
         {"NOLIGHT", "was not recognized as Ambient Light sensor. Invalid calibration format."}});
    EXPECT_EQ(firmware.requestCount(), 0U);
    firmware.blocks.clear();
    EXPECT_THROW(expectOutcomes("static 0 <Offset/> => "), SmhiException);
    EXPECT_EQ(messageOf<CalibrationException>([] {
                  makeSensor(kGeneric)->readCalibrationXml(XmlElement(L"CalibrationData"), 0, 0);
              }),
              "Error. No calibration data format is available");
}

TEST_F(SensorXmlTest, CustomData) {
    expectOutcomes(
        R"(
generic 0 <OEMCustomData DataLength='2'>aBFf</OEMCustomData> => 0007abff
generic 0 <OEMCustomData DataLength=''>xyz</OEMCustomData> => 0007
generic 0 <OEMCustomData DataLength='65535'>MANY</OEMCustomData> => 0007MANY
generic 200 <OEMCustomData DataLength='2'></OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='2'>abc</OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='2'>abcdef</OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='2'>0g12</OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='2'> 123</OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='2'>0x12</OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='2'>éé</OEMCustomData> => MISMATCH
generic 200 <OEMCustomData DataLength='99999999999'/> => NUMBER(99999999999NONE)
generic 200 <OEMCustomData>ab</OEMCustomData> => BAD Missing field DataLength. Line: OEMCustomData
static 0 <OEMCustomData DataLength='1'>ab</OEMCustomData> => Invalid calibration data size
light 1 <OEMCustomData DataLength='15'>030303030303030303030303030303</OEMCustomData> => Invalid calibration data size
static 1 <OEMCustomData DataLength='1'>ab</OEMCustomData> => Unsupported format of Accelerometer Sensor calibration data
)",
        {{"MISMATCH", "BAD BinData size does not match declared length. Line: OEMCustomData"},
         {"MANY", std::string(131070, '0')}});
}

}  // namespace
}  // namespace tavocal::test
