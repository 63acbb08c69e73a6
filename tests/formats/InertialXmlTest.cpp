#include "formats/InertialXml.h"

#include "formats/CalibrationFile.h"
#include "platform/Console.h"

namespace tavocal::test {

using InertialXmlTest = CalibrationFile;

TEST_F(InertialXmlTest, StaticData) {
    expectOutcomes(
        R"(
static 0 <Offset><OffsetX>-2</OffsetX></Offset> => 0007feffffff00000000000000000100000000000000010000000000000001000100010101000000
static 0 <Offset><OffsetX>2147483648</OffsetX></Offset> => Conversion error. Value 2147483648 is not a valid number
static 0 <Offset><OffsetY>1</OffsetY></Offset> => BAD Unexpected element OffsetY. Line: OffsetY
static 0 <Offset><OffsetX/><OffsetY/><OffsetZ/><OffsetZ/></Offset> => BAD Unexpected element OffsetZ. Line: OffsetZ
static 0 <Offset><!--note--></Offset> => BAD Unexpected element . Line: |
static 0 <Matrix><Mat11>+258</Mat11></Matrix> => 00070000000000000000000000000201000000000000010000000000000001000100010101000000
static 0 <Matrix><Mat11>-32768</Mat11><Mat12>32767</Mat12></Matrix> => 00070000000000000000000000000080ff7f00000000010000000000000001000100010101000000
static 0 <Matrix><Mat11>-32769</Mat11></Matrix> => BAD Invalid value for element Mat11. name: Mat11
static 0 <Matrix><Mat11/><Mat12>32768</Mat12></Matrix> => BAD Invalid value for element Mat12. name: Mat12
static 0 <Matrix><Mat11/><Mat12/><Mat13/><Mat21/><Mat22/><Mat23/><Mat31/><Mat32/><Mat33/><ScaleFactor>32768</ScaleFactor></Matrix> => BAD Invalid value for element ScaleFactor
static 0 <Matrix><Mat11>4294967296</Mat11></Matrix> => Conversion error. Value 4294967296 is not a valid number
static 0 <Matrix><Mat12>1</Mat12></Matrix> => BAD Unexpected element Mat12
static 0 <Matrix><!--note--></Matrix> => BAD Unexpected element |
static 0 <Matrix><ScaleFactor>1</ScaleFactor></Matrix> => BAD Unexpected element ScaleFactor
static 0 <Matrix><Mat11/><Mat12/><Mat13/><Mat21/><Mat22/><Mat23/><Mat31/><Mat32/><Mat33/><Mat33>1</Mat33></Matrix> => BAD Unexpected element Mat33
static 0 <Matrix><Mat11/><Mat12/><Mat13/><Mat21/><Mat22/><Mat23/><Mat31/><Mat32/><Mat33/><ScaleFactor>1</ScaleFactor><ScaleFactor>1</ScaleFactor></Matrix> => BAD Unexpected element ScaleFactor
static 0 <AXISMAPPING><XX/><XY>-1</XY><XZ>1</XZ></AXISMAPPING><!-- a note --> => 000700000000000000000000000001000000000000000100000000000000010001001c0101000000
static 0 <AxisMapping><XX>2</XX></AxisMapping> => BAD Invalid value for axis element |
static 0 <AxisMapping><XX>-2</XX></AxisMapping> => BAD Invalid value for axis element |
static 0 <AxisMapping><XX>1.0</XX></AxisMapping> => Conversion error. Value 1.0 is not a valid number
static 0 <AxisMapping><XY>1</XY></AxisMapping> => BAD Unexpected element |
static 0 <AxisMapping><xx>1</xx></AxisMapping> => BAD Unexpected element |
static 0 <AxisMapping><XX/><XY/><XZ/><YX/><YY/><YZ/><ZX/><ZY/><ZZ/><ZZ/></AxisMapping> => BAD Unexpected element |
static 0 <AxisMapping><!--note--></AxisMapping> => BAD Unexpected element note
static 0 <AxisMapping>words</AxisMapping> => BAD Unexpected element words
static 0 <AxisMapping><?XX 1?></AxisMapping> => BAD Unexpected element 1
static 0 <Offset/><VendorData DataLength='2'>abCD</VendorData> => 00070000000000000000000000000100000000000000010000000000000001000100010101000200abcd
static 0 <Offset/><VendorData DataLength='0'></VendorData> => 00070000000000000000000000000100000000000000010000000000000001000100010101000000
static 0 <Offset/><VendorData DataLength='0'>ab</VendorData> => BAD VendorData size does not match declared length. Line: VendorData
static 0 <Offset/><VendorData DataLength='1'>a-</VendorData> => BAD VendorData size does not match declared length. Line: VendorData
static 0 <Offset/><VendorData DataLength=''>ab</VendorData> => BAD Missing field DataLength. Line: VendorData
static 0 <Offset/><VendorData>ab</VendorData> => BAD Missing field DataLength. Line: VendorData
static 1 <Offset/> => BAD Unsupported format of calibration data. Line: CalibrationData
static 200 <Offset/> => BAD Unsupported format of calibration data. Line: CalibrationData
plain 0 <Offset/> => BAD Unknown format of calibration data. Line: CalibrationData
static 0 <Scale/><ScaleFactor>5</ScaleFactor> => 00070000000000000000000000000100000000000000010000000000000001000100010101000000
)");
    const auto sensor = load(fileContent(folder.path("loaded.xml"))).at(0);
    EXPECT_EQ(sensor->formFactor, firmware.formFactor);
    EXPECT_EQ(sensor->hinge, firmware.hinge);
    EXPECT_EQ(sensor->getOriginalCalibration(), CalibrationBlock(40, 0));
}

TEST_F(InertialXmlTest, WhiteNoiseGoesIntoThePresentBlock) {
    expectOutcomes(R"(
dynamic 1 <WhiteNoise>-1</WhiteNoise> => 0101ffffffff010101010101
dynamic 1 <WhiteNoise>4294967295</WhiteNoise> => Conversion error. Value 4294967295 is not a valid number
dynamic 1 <Offset/> => BAD Missing white noise value.
dynamic 2 <WhiteNoise>1</WhiteNoise> => BAD Unsupported format of calibration data. Line: CalibrationData
)");
    testing::internal::CaptureStdout();
    for (const CalibrationBlock& unusable : {CalibrationBlock{}, CalibrationBlock(12, 9)}) {
        firmware.blocks["0073000100020001"] = unusable;
        expectOutcomes(
            "dynamic 1 <WhiteNoise>1</WhiteNoise> => Error. No original scaling for dynamic sensor "
            "Accelerometer");
    }
    platform::Console::instance().flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Warning: Dynamic sensor calibration data is outdated. Ignoring the dynamic "
              "Accelerometer\n");
}

}  // namespace tavocal::test
