#include "formats/InertialXml.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "formats/SensorXmlFixture.h"
#include "platform/Console.h"

namespace tavocal {
namespace {

using test::repeated;
using test::sensorText;

// The default block of a static sensor with some of its bytes replaced.
CalibrationBlock defaultBlockWith(std::size_t position, const CalibrationBlock& bytes) {
    CalibrationBlock block = {0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0,
                              0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 1, 1, 1, 0, 0, 0};
    std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(position));
    return block;
}

class InertialXmlTest : public test::SensorXmlFixture {};

TEST_F(InertialXmlTest, ReadsPartOfStaticData) {
    EXPECT_EQ(blockOf(test::kStaticAccelerometer, 0, "<Offset><OffsetX>-2</OffsetX></Offset>"),
              defaultBlockWith(2, {0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(blockOf(test::kStaticAccelerometer, 0, "<Matrix><Mat11>+258</Mat11></Matrix>"),
              defaultBlockWith(14, {2, 1}));
    EXPECT_EQ(blockOf(test::kStaticAccelerometer, 0,
                      "<AXISMAPPING><XX/><XY>-1</XY></AXISMAPPING><!-- a note -->"),
              defaultBlockWith(34, {0x0C, 1, 1, 0}));
    EXPECT_EQ(blockOf(test::kStaticAccelerometer, 0, "<Scale/><ScaleFactor>5</ScaleFactor>"),
              defaultBlockWith(0, {}));
    EXPECT_EQ(
        blockOf(test::kStaticAccelerometer, 0, "<Offset/><VendorData DataLength='0'></VendorData>"),
        defaultBlockWith(0, {}));
    CalibrationBlock withVendorData = defaultBlockWith(38, {2, 0});
    withVendorData.insert(withVendorData.end(), {0xAB, 0xCD});
    EXPECT_EQ(blockOf(test::kStaticAccelerometer, 0,
                      "<Offset/><VendorData DataLength='2'>abCD</VendorData>"),
              withVendorData);
}

TEST_F(InertialXmlTest, ChecksStaticData) {
    const std::string bad = "XML parsing error. ";
    const std::string axes =
        "<XX>1</XX><XY>0</XY><XZ>0</XZ><YX>0</YX><YY>1</YY><YZ>0</YZ><ZX>0</ZX><ZY>0</ZY>"
        "<ZZ>1</ZZ>";
    std::string elements;
    for (const char* name : {"11", "12", "13", "21", "22", "23", "31", "32", "33"}) {
        elements += "<Mat" + std::string(name) + ">1</Mat" + name + ">";
    }
    const auto mapping = [](const std::string& text) {
        return "<AxisMapping>" + text + "</AxisMapping>";
    };
    const auto matrix = [](const std::string& text) { return "<Matrix>" + text + "</Matrix>"; };
    const auto offset = [](const std::string& text) { return "<Offset>" + text + "</Offset>"; };
    const std::string offsets = "<OffsetX/><OffsetY/><OffsetZ/>";
    const std::string mismatch =
        bad + "VendorData size does not match declared length. Line: VendorData";
    const std::string missingLength = bad + "Missing field DataLength. Line: VendorData";
    const auto vendor = [](const std::string& length, const std::string& text) {
        return "<Offset/><VendorData DataLength='" + length + "'>" + text + "</VendorData>";
    };
    expectFailures(
        test::kStaticAccelerometer, 0,
        {{mapping("<XY>1</XY>"), bad + "Unexpected element "},
         {mapping("<xx>1</xx>"), bad + "Unexpected element "},
         {mapping("<!--note-->" + axes), bad + "Unexpected element note"},
         {mapping("words"), bad + "Unexpected element words"},
         {mapping(axes + "<ZZ>1</ZZ>"), bad + "Unexpected element "},
         {mapping("<?XX 1?>"), bad + "Unexpected element 1"},
         {mapping("<XX>2</XX>"), bad + "Invalid value for axis element "},
         {mapping("<XX>-2147483648</XX>"), bad + "Invalid value for axis element "},
         {mapping("<XX>1.0</XX>"), test::kNoNumber + "1.0 is not a valid number"},
         {matrix("<Mat12>1</Mat12>"), bad + "Unexpected element Mat12"},
         {matrix("<!--note-->" + elements), bad + "Unexpected element "},
         {matrix("<ScaleFactor>1</ScaleFactor>"), bad + "Unexpected element ScaleFactor"},
         {matrix(elements + "<Mat33>1</Mat33>"), bad + "Unexpected element Mat33"},
         {matrix(elements + "<ScaleFactor>1</ScaleFactor><ScaleFactor>1</ScaleFactor>"),
          bad + "Unexpected element ScaleFactor"},
         {matrix("<Mat11>32768</Mat11>"), bad + "Invalid value for element Mat11. name: Mat11"},
         {matrix("<Mat11>0</Mat11><Mat12>-32769</Mat12>"),
          bad + "Invalid value for element Mat12. name: Mat12"},
         {matrix(elements + "<ScaleFactor>32768</ScaleFactor>"),
          bad + "Invalid value for element ScaleFactor"},
         {matrix("<Mat11>4294967296</Mat11>"),
          test::kNoNumber + "4294967296 is not a valid number"},
         {offset("<OffsetY>1</OffsetY>"), bad + "Unexpected element OffsetY. Line: OffsetY"},
         {offset(offsets + "<OffsetZ/>"), bad + "Unexpected element OffsetZ. Line: OffsetZ"},
         {offset("<!--note-->"), bad + "Unexpected element . Line: "},
         {offset("<OffsetX>2147483648</OffsetX>"),
          test::kNoNumber + "2147483648 is not a valid number"},
         {"<Offset/><VendorData>ab</VendorData>", missingLength},
         {vendor("", "ab"), missingLength},
         {vendor("2", "ab"), mismatch},
         {vendor("0", "ab"), mismatch},
         {vendor("1", "a-"), mismatch},
         {vendor("-1", ""), mismatch},
         {vendor("65536", repeated("0", 131072)), mismatch}});
    const std::string format = bad + "Unsupported format of calibration data. Line: ";
    expectFailures(test::kStaticAccelerometer, 1, {{"<Offset/>", format + "CalibrationData"}});
    expectFailures(test::kStaticAccelerometer, 200, {{"<Offset/>", format + "CalibrationData"}});
    expectFailures(
        test::kPlainInertial, 0,
        {{"<Offset/>", bad + "Unknown format of calibration data. Line: CalibrationData"}});
}

TEST_F(InertialXmlTest, ReadsFormFactorAndHingeOfInertialSensor) {
    file.firmware.formFactor = 4;
    file.firmware.hinge = 3;
    const auto sensor = file.loadSensor(sensorText(test::kStaticAccelerometer, 0, "<Offset/>"));
    EXPECT_EQ(sensor->formFactor, 4);
    EXPECT_EQ(sensor->hinge, 3);
    EXPECT_TRUE(sensor->calibrationLoaded);
}

TEST_F(InertialXmlTest, ReadsWhiteNoise) {
    const LUID& luid = test::kDynamicAccelerometer;
    CalibrationBlock expected(12, 1);
    std::fill_n(expected.begin() + 2, 4, std::uint8_t{0xFF});
    EXPECT_EQ(blockOf(luid, 1, "<WhiteNoise>-1</WhiteNoise>"), expected);
    expectFailures(luid, 1,
                   {{"<Offset/>", "XML parsing error. Missing white noise value."},
                    {"<WhiteNoise>4294967295</WhiteNoise>",
                     test::kNoNumber + "4294967295 is not a valid number"}});
    testing::internal::CaptureStdout();
    for (const CalibrationBlock& unusable : {CalibrationBlock{}, CalibrationBlock(12, 9)}) {
        file.firmware.blocks[luidText(luid)] = unusable;
        expectFailures(luid, 1,
                       {{"<WhiteNoise>1</WhiteNoise>",
                         "Error. No original scaling for dynamic sensor Accelerometer"}});
    }
    platform::Console::instance().flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Warning: Dynamic sensor calibration data is outdated. Ignoring the dynamic "
              "Accelerometer\n");
}

}  // namespace
}  // namespace tavocal
