#include "formats/SensorXml.h"

#include "formats/CalibrationFile.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

using SensorXmlTest = CalibrationFile;

// All that stands behind the attribute at hand is wrong too: the first one counts.
TEST_F(SensorXmlTest, ReadsAttributesInOrder) {
    std::string text =
        "<Tavo><Calibration><Sensor SensorTypeId='-1' SubTypeId='-1' VendorId='-1' InstanceId='-1' "
        "Flags='-1'><!-- a note --><CalibrationData Version='-1' FormatId='-1'>"
        "<OEMCustomData DataLength='0'>any</OEMCustomData></CalibrationData></Sensor></Calibration>"
        "</Tavo>";
    for (const auto& [name, limits] : textTable(R"(
SensorTypeId => 65536,  +1,. Line: Sensor
SubTypeId => 65536,65535,. Line: Sensor
VendorId => 65536,65534,. Line: Sensor
InstanceId => 256,255,. Line: Sensor
Flags => 256,254,. Line: Sensor
Version => 256,253,. Line: CalibrationData
FormatId => 256,255,. Line: CalibrationData)")) {
        const std::size_t comma = limits.find(','), last = limits.rfind(',');
        const std::string line = limits.substr(last + 1), old = name + "='-1'";
        const auto with = [&, start = name + "='"](const std::string& value) {
            return replaceAll(text, old, start + value + "'");
        };
        const std::string invalid = "XML parsing error. " + name + " has invalid value" + line;
        EXPECT_EQ(outcomeOf(text), invalid);
        EXPECT_EQ(outcomeOf(with(limits.substr(0, comma))), invalid);
        EXPECT_EQ(outcomeOf(replaceAll(text, old, "")),
                  "XML parsing error. Missing field " + name + line);
        EXPECT_EQ(outcomeOf(with("x")), "Conversion error. Value x is not a valid number");
        text = with(limits.substr(comma + 1, last - comma - 1));
    }
    EXPECT_EQ(load(text).at(0)->getLuid(), (LUID{1, 65534, 65535, 255, 254}));
    EXPECT_EQ(outcomeOf(text), "fffd");
    EXPECT_EQ(outcomeOf(replaceAll(text, "CalibrationData", "Data")),
              "Failed to load XML input file. Invalid CalibrationData node name.");
}

TEST_F(SensorXmlTest, WhatASensorCanHold) {
    expectOutcomes(R"(
generic 0 <Offset/> => BAD Sensor LUID was not recognized as Inertial sensor. Invalid calibration format
light 0 <WhiteNoise/> => BAD Sensor LUID was not recognized as Inertial sensor. Invalid calibration format
light 0 LEVELS<Matrix/> => BAD Sensor LUID was not recognized as Inertial sensor. Invalid calibration format
static 0 <WhiteNoise/> => BAD Sensor LUID has invalid format
plain 0 <WhiteNoise/><Matrix/> => BAD Sensor LUID has invalid format
dynamic 0 <AxisMapping/> => BAD Sensor LUID has invalid format
dynamic 0 <matrix/> => BAD Sensor LUID has invalid format
dynamic 0 <Scale/> => BAD Sensor LUID has invalid format
both 0 <ScaleFactor/> => BAD Sensor LUID has invalid format
static 0 LEVELS => BAD Sensor LUID was not recognized as Ambient Light sensor. Invalid calibration format. Line: CalibrationData
static 0 <Offset/><OEMCustomData/> => BAD Multiple data for sensor LUID. Line: CalibrationData
light 0 LEVELS<OEMCustomData/> => BAD Multiple data for sensor LUID. Line: CalibrationData
light 0 <Multiplier/> => BAD No calibration data was specified for sensor LUID. Line: CalibrationData
generic 0 <OEMCustomData DataLength='2'>aBFf</OEMCustomData> => 0007abff
generic 0 <OEMCustomData DataLength=''>xyz</OEMCustomData> => 0007
generic 0 <OEMCustomData>ab</OEMCustomData> => BAD Missing field DataLength. Line: OEMCustomData
generic 0 <OEMCustomData DataLength='2147483648'/> => Conversion error. Value 2147483648 is not a valid number
generic 0 <OEMCustomData DataLength='2'/> => BAD BinData size does not match declared length. Line: OEMCustomData
generic 0 <OEMCustomData DataLength='2'>abc</OEMCustomData> => BAD BinData size does not match declared length. Line: OEMCustomData
generic 0 <OEMCustomData DataLength='2'>abcdef</OEMCustomData> => BAD BinData size does not match declared length. Line: OEMCustomData
generic 0 <OEMCustomData DataLength='2'>0g12</OEMCustomData> => BAD BinData size does not match declared length. Line: OEMCustomData
generic 0 <OEMCustomData DataLength='2'>éé</OEMCustomData> => BAD BinData size does not match declared length. Line: OEMCustomData
static 0 <OEMCustomData DataLength='1'>ab</OEMCustomData> => Invalid calibration data size
static 1 <OEMCustomData DataLength='1'>ab</OEMCustomData> => Unsupported format of Accelerometer Sensor calibration data
light 1 <OEMCustomData DataLength='15'>030303030303030303030303030303</OEMCustomData> => Invalid calibration data size
)");
    EXPECT_TRUE(firmware.kelu->written().empty());
    firmware.blocks.clear();
    EXPECT_THROW(expectOutcomes("static 0 <Offset/> => "), SmhiException);
    const XmlElement data(L"CalibrationData");
    EXPECT_EQ(
        messageOf<CalibrationException>([&] { makeSensor({})->readCalibrationXml(data, 0, 0); }),
        "Error. No calibration data format is available");
}

}  // namespace tavocal::test
