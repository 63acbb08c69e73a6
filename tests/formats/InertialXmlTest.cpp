#include "formats/InertialXml.h"

#include <gtest/gtest.h>

#include "formats/CalibrationFile.h"
#include "platform/Console.h"

namespace tavocal::test {
namespace {

class InertialXmlTest : public CalibrationFile {};

TEST_F(InertialXmlTest, StaticData) {
    expectOutcomes(
        R"(
static 0 <Offset><OffsetX>-2</OffsetX></Offset> => 0007feffffff0000000000000000MATRIX010101000000
static 0 <Offset><OffsetX>2147483648</OffsetX></Offset> => NUMBER(2147483648NONE)
static 0 <Offset><OffsetY>1</OffsetY></Offset> => BAD Unexpected element OffsetY. Line: OffsetY
static 0 <Offset><OffsetX/><OffsetY/><OffsetZ/><OffsetZ/></Offset> => BAD Unexpected element OffsetZ. Line: OffsetZ
static 0 <Offset><!--note--></Offset> => BAD Unexpected element . Line: |

static 0 <Matrix><Mat11>+258</Mat11></Matrix> => 0007NIL02010000TAIL010101000000
static 0 <Matrix><Mat11>-32768</Mat11><Mat12>32767</Mat12></Matrix> => 0007NIL0080ff7fTAIL010101000000
static 0 <Matrix><Mat11>-32769</Mat11></Matrix> => BAD Invalid value for element Mat11. name: Mat11
static 0 <Matrix><Mat11/><Mat12>32768</Mat12></Matrix> => BAD Invalid value for element Mat12. name: Mat12
static 0 <Matrix>NINE<ScaleFactor>32768</ScaleFactor></Matrix> => BAD Invalid value for element ScaleFactor
static 0 <Matrix><Mat11>4294967296</Mat11></Matrix> => NUMBER(4294967296NONE)
static 0 <Matrix><Mat12>1</Mat12></Matrix> => BAD Unexpected element Mat12
static 0 <Matrix><!--note--></Matrix> => BAD Unexpected element |
static 0 <Matrix><ScaleFactor>1</ScaleFactor></Matrix> => BAD Unexpected element ScaleFactor
static 0 <Matrix>NINE<Mat33>1</Mat33></Matrix> => BAD Unexpected element Mat33
static 0 <Matrix>NINE<ScaleFactor>1</ScaleFactor><ScaleFactor>1</ScaleFactor></Matrix> => BAD Unexpected element ScaleFactor

static 0 <AXISMAPPING><XX/><XY>-1</XY><XZ>1</XZ></AXISMAPPING><!-- a note --> => 0007NILMATRIX1c0101000000
static 0 <AxisMapping><XX>2</XX></AxisMapping> => BAD Invalid value for axis element |
static 0 <AxisMapping><XX>-2</XX></AxisMapping> => BAD Invalid value for axis element |
static 0 <AxisMapping><XX>1.0</XX></AxisMapping> => NUMBER(1.0NONE)
static 0 <AxisMapping><XY>1</XY></AxisMapping> => BAD Unexpected element |
static 0 <AxisMapping><xx>1</xx></AxisMapping> => BAD Unexpected element |
static 0 <AxisMapping><XX/><XY/><XZ/><YX/><YY/><YZ/><ZX/><ZY/><ZZ/><ZZ/></AxisMapping> => BAD Unexpected element |
static 0 <AxisMapping><!--note--></AxisMapping> => BAD Unexpected element note
static 0 <AxisMapping>words</AxisMapping> => BAD Unexpected element words
static 0 <AxisMapping><?XX 1?></AxisMapping> => BAD Unexpected element 1

static 0 <Offset/><VendorData DataLength='2'>abCD</VendorData> => 0007NILMATRIX010101000200abcd
static 0 <Offset/><VendorData DataLength='0'></VendorData> => 0007NILMATRIX010101000000
static 0 <Offset/><VendorData DataLength='0'>ab</VendorData> => BAD VendorData size does not match declared length. Line: VendorData
static 0 <Offset/><VendorData DataLength='1'>a-</VendorData> => BAD VendorData size does not match declared length. Line: VendorData
static 0 <Offset/><VendorData DataLength=''>ab</VendorData> => BAD Missing field DataLength. Line: VendorData
static 0 <Offset/><VendorData>ab</VendorData> => BAD Missing field DataLength. Line: VendorData

static 0 <Scale/><ScaleFactor>5</ScaleFactor> => 0007NILMATRIX010101000000
static 1 <Offset/> => BAD Unsupported format of calibration data. Line: CalibrationData
static 200 <Offset/> => BAD Unsupported format of calibration data. Line: CalibrationData
plain 0 <Offset/> => BAD Unknown format of calibration data. Line: CalibrationData
)",
        {{"NINE", "<Mat11/><Mat12/><Mat13/><Mat21/><Mat22/><Mat23/><Mat31/><Mat32/><Mat33/>"},
         {"MATRIX", "01000000TAIL"},
         {"TAIL", "00000000010000000000000001000100"},
         {"NIL", std::string(24, '0')},
         {"|", ""}});
    const auto sensor = load(
        fileText("<Sensor SensorTypeId='115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='2'>"
                 "<CalibrationData Version='7' FormatId='0'><Offset/></CalibrationData></Sensor>"));
    EXPECT_EQ(sensor.at(0)->formFactor, firmware.formFactor);
    EXPECT_EQ(sensor.at(0)->hinge, firmware.hinge);
    EXPECT_EQ(sensor.at(0)->getOriginalCalibration(), CalibrationBlock(40, 0));
}

TEST_F(InertialXmlTest, WhiteNoiseGoesIntoThePresentBlock) {
    expectOutcomes(R"(
dynamic 1 <WhiteNoise>-1</WhiteNoise> => 0101ffffffff010101010101
dynamic 1 <WhiteNoise>4294967295</WhiteNoise> => NUMBER(4294967295NONE)
dynamic 1 <Offset/> => BAD Missing white noise value.
dynamic 2 <WhiteNoise>1</WhiteNoise> => BAD Unsupported format of calibration data. Line: CalibrationData
)");
    testing::internal::CaptureStdout();
    for (const CalibrationBlock& unusable : {CalibrationBlock{}, CalibrationBlock(12, 9)}) {
        firmware.blocks[luidText(kDynamicAccelerometer)] = unusable;
        expectOutcomes(
            "dynamic 1 <WhiteNoise>1</WhiteNoise> => Error. No original scaling for dynamic sensor "
            "Accelerometer");
    }
    platform::Console::instance().flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Warning: Dynamic sensor calibration data is outdated. Ignoring the dynamic "
              "Accelerometer\n");
}

}  // namespace
}  // namespace tavocal::test
