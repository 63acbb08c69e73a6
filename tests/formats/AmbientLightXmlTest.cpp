#include "formats/AmbientLightXml.h"

#include "formats/CalibrationFile.h"
#include "platform/Console.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

using AmbientLightXmlTest = CalibrationFile;

TEST_F(AmbientLightXmlTest, Scale) {
    testing::internal::CaptureStdout();
    expectOutcomes(R"(
light 1 <Multiplier Divider='255'>0</Multiplier>LEVELS => 01070000ff03010002000100020001000200
light 1 <Multiplier Divider='1'>65535</Multiplier>LEVELS => 0107ffff0103010002000100020001000200
light 1 <Multiplier Divider=''>5</Multiplier>LEVELS => 010705000103010002000100020001000200
light 1 <Multiplier Divider='0'>6</Multiplier>LEVELS => 010706000103010002000100020001000200
light 1 <Multiplier Divider='1'>65536</Multiplier>LEVELS => Invalid multiplier value in XML input file. Value should be between 0 and 65535. Line: Multiplier
light 1 <Multiplier Divider='1'>-1</Multiplier>LEVELS => Invalid multiplier value in XML input file. Value should be between 0 and 65535. Line: Multiplier
light 1 <Multiplier Divider='1'></Multiplier>LEVELS => Invalid multiplier value in XML input file. Value should be between 0 and 65535. Line: Multiplier
light 1 <Multiplier Divider='256'>1</Multiplier>LEVELS => Invalid divider value in XML input file. Value should be between 1 and 255. Node: Multiplier
light 1 <Multiplier Divider='-1'>1</Multiplier>LEVELS => Invalid divider value in XML input file. Value should be between 1 and 255. Node: Multiplier
light 1 <Multiplier>1</Multiplier>LEVELS => BAD Missing field Divider. Line: Multiplier
light 1 LEVELS => BAD Missing Ambient Light multiplier node. Line: CalibrationData
light 2 LEVELS => Format ID of ALS calibration structure is not supported. Only supported format is 1. Line: CalibrationData
)");
    platform::Console::instance().flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Warning: Ambient Light divider value is set to 0. Changing it to 1. Line: "
              "Multiplier\n");
}

TEST_F(AmbientLightXmlTest, Steps) {
    expectOutcomes(R"(
light 1 SCALELEVELS => 0107fa006403010002000100020001000200
light 1 SCALE<Steps NumOfSteps='3'>STEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEP</Steps> => 0107fa006403010002000100020001000200
light 1 SCALE<Steps NumOfSteps='3'>STEP</Steps> => 0107fa006403010002000000000000000000
light 1 SCALE<Steps NumOfSteps='15'>STEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEP</Steps> => 0107fa00640f010002000100020001000200010002000100020001000200010002000100020001000200010002000100020001000200010002000100020001000200
light 1 SCALE<Steps NumOfSteps='2'>STEPSTEPSTEP</Steps> => BAD Invalid value for NumOfSteps. Line: Steps
light 1 SCALE<Steps NumOfSteps='16'>STEPSTEPSTEP</Steps> => BAD Invalid value for NumOfSteps. Line: Steps
light 1 SCALE<Steps NumOfSteps=''>STEPSTEPSTEP</Steps> => BAD Missing field NumOfSteps. Line: Steps
light 1 SCALE<Steps/> => BAD Missing field NumOfSteps. Line: Steps
light 1 SCALE<Steps NumOfSteps='3'><step/></Steps> => BAD Unexpected element , Line: step
light 1 SCALE<Steps NumOfSteps='3'><!--note--></Steps> => BAD Unexpected element , Line: |
light 1 SCALE<Steps NumOfSteps='3'><?Step 1?></Steps> => BAD Unexpected element , Line: Step
light 1 SCALE<Steps NumOfSteps='3'>STEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEPSTEP</Steps> => BAD Unexpected element , Line: Step
light 1 SCALE<Steps NumOfSteps='3'><Step><Lux value='1'/></Step></Steps> => scale node is NULL.
light 1 SCALE<Steps NumOfSteps='3'><Step><Scale value='1'/></Step></Steps> => lux node is NULL.
light 1 SCALE<Steps NumOfSteps='3'><Step><scale value='1'/><Lux value='1'/></Step></Steps> => BAD Unexpected element , Line: scale
light 1 SCALE<Steps NumOfSteps='3'><Step><Scale value='1'/><LUX value='1'/></Step></Steps> => BAD Unexpected element , Line: LUX
light 1 SCALE<Steps NumOfSteps='3'><Step><Scale value='65536'/><Lux value='1'/></Step></Steps> => Invalid Scale value in XML input file. Value should be between 0 and 65535. Line: Scale
light 1 SCALE<Steps NumOfSteps='3'><Step><Scale value='-1'/><Lux value='1'/></Step></Steps> => Invalid Scale value in XML input file. Value should be between 0 and 65535. Line: Scale
light 1 SCALE<Steps NumOfSteps='3'><Step><Scale value='1'/><Lux value='65536'/></Step></Steps> => Invalid Scale value in XML input file. Value should be between 0 and 65535. Line: Lux
light 1 SCALE<Steps NumOfSteps='3'><Step><Scale/><Lux value='1'/></Step></Steps> => BAD Missing field value. Line: Scale
light 1 SCALELEVELS<VendorData DataLength='0'>words</VendorData> => 0107fa0064030100020001000200010002000000
light 1 SCALELEVELS<VendorData DataLength='1'>abc</VendorData> => BAD BinData size does not match declared length. Line: VendorData
light 1 SCALELEVELS<VendorData DataLength='47'>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa</VendorData> => Invalid calibration data size
light 1 SCALELEVELS<VendorData DataLength=''/> => BAD Missing field DataLength. Line: VendorData
light 1 SCALELEVELS<VendorData/> => BAD Missing field DataLength. Line: VendorData
)");
    // No file gets as far without steps: nothing else marks the data as that of a light sensor.
    XmlDocument document;
    ASSERT_EQ(document.loadBytes("<A><Multiplier Divider='1'>1</Multiplier></A>"),
              XmlResult::Success);
    EXPECT_EQ(messageOf<CalibrationException>(
                  [&] { readAmbientLightPayload(*document.firstChild()->asElement(), 1, 0); }),
              "Calibration data node is NULL.");
}

}  // namespace tavocal::test
