#include "formats/CalibrationXml.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/CalibrationFile.h"
#include "support/MessageOf.h"
#include "xml/XmlElement.h"

namespace tavocal::test {
namespace {

const std::string kBad = "XML parsing error. ";

// A block of each kind, and the file that holds them all.
const std::vector<std::pair<LUID, CalibrationBlock>> kBlocks = {
    {{0x73, 1, 0, 1, kStaticFlag},
     {0x00, 0x01,                                                              // FormatId, Version
      0x0C, 0x00, 0x00, 0x00, 0xD8, 0xFF, 0xFF, 0xFF, 0x07, 0x00, 0x01, 0x00,  // offset
      0x00, 0x04, 0x02, 0x00, 0xFF, 0xFF, 0x04, 0x00, 0x01, 0x04, 0x06, 0x00,  // matrix
      0x07, 0x00, 0xFF, 0x7F, 0x00, 0x80, 0x00, 0x04,                          // ScaleFactor
      0x0D, 0x71, 0x03, 0x00,                                                  // axis mapping
      0x02, 0x00, 0xAB, 0x0F}},                                                // vendor data
    {{0x76, 2, 3, 0, kDynamicFlag}, {2, 9, 0xE8, 0x03, 0, 0, 7, 7, 7, 7, 7, 7}},
    {kAmbientLight,
     {1, 0, 0xFA, 0, 100, 3, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0xFF, 0xFF, 2, 0, 0xAB, 0xCD}},
    {kPlainInertial, {0, 3, 0x10}},
    {kGeneric, {5, 255, 0x01, 0x02, 0xFE}},
    {kStaticAccelerometer, {200, 4}},
};

// Without its line ends and the blanks that indent.
const std::string kDocument =
    R"(<?xml version="1.0" encoding="UTF-8"?><Tavo><Calibration>)"
    R"(<Sensor SensorTypeId="115" SubTypeId="0" VendorId="1" InstanceId="1" Flags="2">NOTE)"
    R"(<CalibrationData Version="1" FormatId="0">)"
    "<!--Axis mapping matrix maps the raw axes on sensor, towards axis system on device after "
    "calibration.-->"
    "<AxisMapping><XX>1</XX><XY>-1</XY><XZ>0</XZ><YX>0</YX><YY>1</YY><YZ>0</YZ><ZX>-1</ZX>"
    "<ZY>1</ZY><ZZ>-1</ZZ></AxisMapping>"
    "<!--This applies to the raw readings so they will be scaled to get the calibrated values. The "
    "actual scale is the values in matrix divided by the ScaleFactor.-->"
    "<Matrix><Mat11>1024</Mat11><Mat12>2</Mat12><Mat13>-1</Mat13><Mat21>4</Mat21>"
    "<Mat22>1025</Mat22><Mat23>6</Mat23><Mat31>7</Mat31><Mat32>32767</Mat32><Mat33>-32768</Mat33>"
    "<ScaleFactor>1024</ScaleFactor></Matrix>"
    "<!--Offset will be removed from the raw readings to achieve the calibration.-->"
    "<Offset><OffsetX>12</OffsetX><OffsetY>-40</OffsetY><OffsetZ>65543</OffsetZ></Offset>"
    R"(<VendorData DataLength="2">ab0f</VendorData></CalibrationData></Sensor>)"
    R"(<Sensor SensorTypeId="118" SubTypeId="3" VendorId="2" InstanceId="0" Flags="1">NOTE)"
    R"(<CalibrationData Version="9" FormatId="2"><WhiteNoise>1000</WhiteNoise></CalibrationData>)"
    R"(</Sensor><Sensor SensorTypeId="65" SubTypeId="0" VendorId="0" InstanceId="0" Flags="2">NOTE)"
    R"(<CalibrationData Version="0" FormatId="1">)"
    "<!--The following represents the scale the sensor data will be multiplied by. The scale is a "
    "floating number is represented by multiplier/divider. The final result is Lux value read from "
    "sensor * (multiplier/divider)-->"
    R"(<Multiplier Divider="100">250</Multiplier><Steps NumOfSteps="3">)"
    R"(<Step><Scale value="1"/><Lux value="2"/></Step><Step><Scale value="3"/><Lux value="4"/></Step>)"
    R"(<Step><Scale value="5"/><Lux value="65535"/></Step></Steps>)"
    R"(<VendorData DataLength="2">abcd</VendorData></CalibrationData></Sensor>)"
    R"(<Sensor SensorTypeId="114" SubTypeId="0" VendorId="0" InstanceId="0" Flags="0">NOTE)"
    R"(<CalibrationData Version="3" FormatId="0"><OEMCustomData DataLength="1">10</OEMCustomData>)"
    R"(</CalibrationData></Sensor>)"
    R"(<Sensor SensorTypeId="4660" SubTypeId="0" VendorId="0" InstanceId="0" Flags="2">NOTE)"
    R"(<CalibrationData Version="255" FormatId="5"><OEMCustomData DataLength="3">0102fe)"
    R"(</OEMCustomData></CalibrationData></Sensor>)"
    R"(<Sensor SensorTypeId="115" SubTypeId="2" VendorId="1" InstanceId="0" Flags="2">NOTE)"
    R"(<CalibrationData Version="4" FormatId="200"><OEMCustomData DataLength="0"></OEMCustomData>)"
    R"(</CalibrationData></Sensor></Calibration></Tavo>)";

// A file's text as above.
std::string withoutLayout(const std::string& text) {
    return replaceAll(
        replaceAll(replaceAll(text, "    ", ""), "\r\n", ""),
        "<!--Below are the calibration parameters to be applied to raw readings. Note that it is "
        "not an issue that after calibration, sensor readings might exceed original range.-->",
        "NOTE");
}

std::shared_ptr<Sensor> sensorWith(const LUID& luid, const CalibrationBlock& original,
                                   const CalibrationBlock& toWrite = {}) {
    auto sensor = makeSensor(luid);
    sensor->originalCalibration = original;
    sensor->calibrationLoaded = !original.empty();
    sensor->calibrationToWrite = toWrite;
    return sensor;
}

class CalibrationXmlTest : public CalibrationFile {
  protected:
    // The file of that one sensor. With `useCurrent` unset that is its block to write.
    std::string savedOne(const LUID& luid, const CalibrationBlock& original,
                         const CalibrationBlock& toWrite, bool useCurrent = false) {
        return saved({sensorWith(luid, original, toWrite)}, useCurrent);
    }
};

TEST_F(CalibrationXmlTest, EachKindOfBlockIsWrittenToTheLetterAndComesBack) {
    Sensors sensors;
    for (const auto& [luid, block] : kBlocks) {
        sensors.push_back(sensorWith(luid, block));
        firmware.blocks[luidText(luid)] = block;
    }
    const std::string text = saved(sensors, true);
    EXPECT_EQ(withoutLayout(text), kDocument);
    // The firmware's own block keeps all but the white noise.
    CalibrationBlock present(71, 5);
    present[0] = 2;
    firmware.blocks[luidText(kBlocks[1].first)] = present;
    present[1] = 5;
    for (const std::size_t i : {2U, 3U, 4U, 5U}) {
        present[i] = kBlocks[1].second[i];
    }
    const Sensors loaded = load(text);
    ASSERT_EQ(loaded.size(), kBlocks.size());
    for (std::size_t i = 0; i < loaded.size(); ++i) {
        EXPECT_EQ(loaded[i]->getLuid(), kBlocks[i].first);
        EXPECT_EQ(loaded[i]->calibrationToWrite, i == 1 ? present : kBlocks[i].second) << i;
    }
    EXPECT_EQ(saved(loaded, false), replaceAll(text, "Version=\"9\"", "Version=\"5\""));
}

TEST_F(CalibrationXmlTest, ChoosesBlock) {
    const std::string none = saved({}, true);
    EXPECT_EQ(none,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Tavo>\r\n    <Calibration/>\r\n"
              "</Tavo>\r\n");
    const CalibrationBlock first = {200, 1, 0xA1};
    const CalibrationBlock second = {201, 2, 0xA2};
    EXPECT_EQ(savedOne(kAmbientLight, {}, {}), none);
    EXPECT_EQ(savedOne(kAmbientLight, {}, second, true), none);
    EXPECT_TRUE(contains(savedOne(kAmbientLight, {}, second), ">a2<"));
    EXPECT_TRUE(contains(savedOne(kAmbientLight, first, {}), ">a1<"));
    EXPECT_TRUE(contains(savedOne(kAmbientLight, first, second), ">a2<"));
    EXPECT_TRUE(contains(savedOne(kAmbientLight, first, second, true), ">a1<"));
    const auto refused = sensorWith(kAmbientLight, first);
    refused->calibrationLoaded = false;
    EXPECT_EQ(saved({refused}, true), none);
}

TEST_F(CalibrationXmlTest, NumbersWithoutSignInTheBlockHaveNoneInTheFile) {
    CalibrationBlock block(40, 0xFF);
    block[0] = 0;
    block[38] = block[39] = 0;
    const std::string text = savedOne(kStaticAccelerometer, {}, block);
    EXPECT_TRUE(contains(text, "<ScaleFactor>65535</ScaleFactor>"));
    EXPECT_FALSE(contains(text, "VendorData"));
    EXPECT_TRUE(contains(savedOne(kDynamicAccelerometer, {}, {1, 0, 0xFF, 0xFF, 0xFF, 0xFF}),
                         "<WhiteNoise>4294967295</WhiteNoise>"));
    CalibrationBlock light(66, 0xFF);
    light[0] = light[5] = 1;
    EXPECT_TRUE(contains(savedOne(kAmbientLight, {}, light),
                         "<Multiplier Divider=\"255\">65535</Multiplier>\r\n"
                         "                <Steps NumOfSteps=\"1\">"));
    EXPECT_FALSE(contains(savedOne(kAmbientLight, {}, light), "VendorData"));
}

TEST_F(CalibrationXmlTest, RefusesBlocksThatHaveNoXml) {
    const CalibrationBlock good = kBlocks[2].second;
    const auto cut = [&good](std::ptrdiff_t bytes, std::uint8_t stepCount = 3) {
        CalibrationBlock block(good.begin(), good.end() - bytes);
        block[5] = stepCount;
        return block;
    };
    const auto failure = [this](const LUID& luid, const CalibrationBlock& block,
                                const CalibrationBlock& original = {}) {
        return messageOf<CalibrationException>([&] { savedOne(luid, original, block); });
    };
    const std::string tooShort = "Invalid calibration data";
    const std::string format = "Unsupported format of calibration data";
    EXPECT_EQ(failure(kGeneric, {200}), tooShort);
    EXPECT_EQ(failure(kStaticAccelerometer, CalibrationBlock(40, 1)), kBad + format);
    EXPECT_EQ(failure(kStaticAccelerometer, CalibrationBlock(39, 0)), tooShort);
    EXPECT_EQ(failure(kDynamicAccelerometer, CalibrationBlock(5, 1)), tooShort);
    EXPECT_EQ(failure(kAmbientLight, CalibrationBlock(18, 0)), format);
    EXPECT_EQ(failure(kAmbientLight, {1, 0, 1, 0, 1}), tooShort);
    EXPECT_EQ(failure(kAmbientLight, {1, 0, 1, 0, 1, 0}), kNoFailure);
    EXPECT_EQ(failure(kAmbientLight, cut(5)), tooShort) << "within a step";
    EXPECT_EQ(failure(kAmbientLight, good, {1, 0, 1, 0, 1}), tooShort);
    EXPECT_EQ(failure(kAmbientLight, good, cut(0, 2)),
              "Invalid Ambient Light Sensor calibration data: not enough ALR steps");
    EXPECT_EQ(failure(kAmbientLight, cut(4), cut(4)), kNoFailure);
    EXPECT_EQ(failure(kAmbientLight, cut(3), cut(4)), tooShort) << "within the vendor length";
    EXPECT_EQ(failure(kAmbientLight, cut(1), cut(4)), tooShort) << "within the vendor data";
    EXPECT_EQ(failure(kAmbientLight, cut(0, 4), cut(0, 4)), kNoFailure);
}

TEST_F(CalibrationXmlTest, FilesThatAreNone) {
    EXPECT_EQ(messageOf<CalibrationException>([&] { saveCalibrationXml(folder.path(), {}, true); }),
              "Failed to write to file");
    for (const std::string& path : {std::string(), folder.path("missing.xml"), folder.path()}) {
        EXPECT_EQ(messageOf<CalibrationException>([&] { loadCalibrationXml(path, firmware.sdt); }),
                  "Failed to open XML input file");
    }
    for (const auto& [text, failure] : textTable(R"(
<Tavo></Calibration> => BAD
<A><Tavo/></A> => BAD. Tavo root node could not be located
<Tavo><Sensor/></Tavo> => BAD. Calibration node could not be located
<tavo><calibration><sensor/></calibration></tavo> => BAD. Invalid Sensor node name: sensor
<Tavo><Calibration>GOOD<!-- a note --></Calibration></Tavo> => BAD. Invalid Sensor node name: |
<Tavo><Calibration>GOODwords</Calibration></Tavo> => BAD. Invalid Sensor node name: |
<Tavo><Calibration>GOODGOOD</Calibration></Tavo> => 0102
)",
                                                 {{"BAD", "Failed to load XML input file"},
                                                  {"GOOD",
                                                   "<Sensor SensorTypeId='9' SubTypeId='' "
                                                   "VendorId='' InstanceId='' Flags=''>"
                                                   "<CalibrationData Version='2' FormatId='1'>"
                                                   "<OEMCustomData DataLength='0'/>"
                                                   "</CalibrationData></Sensor>"},
                                                  {"|", ""}})) {
        EXPECT_EQ(outcomeOf(text), failure) << text;
    }
}

}  // namespace
}  // namespace tavocal::test
