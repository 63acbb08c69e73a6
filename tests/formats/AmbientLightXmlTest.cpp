#include "formats/AmbientLightXml.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "formats/CalibrationFile.h"
#include "platform/Console.h"
#include "support/MessageOf.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal::test {
namespace {

class AmbientLightXmlTest : public CalibrationFile {};

TEST_F(AmbientLightXmlTest, Scale) {
    testing::internal::CaptureStdout();
    expectOutcomes(R"(
light 1 <Multiplier Divider='255'>0</Multiplier>STEPS => 01070000ff03zzz
light 1 <Multiplier Divider='1'>65535</Multiplier>STEPS => 0107ffff0103zzz
light 1 <Multiplier Divider=''>5</Multiplier>STEPS => 010705000103zzz
light 1 <Multiplier Divider='0'>6</Multiplier>STEPS => 010706000103zzz
light 1 <Multiplier Divider='1'>65536</Multiplier>STEPS => WIDE
light 1 <Multiplier Divider='1'>-1</Multiplier>STEPS => WIDE
light 1 <Multiplier Divider='1'></Multiplier>STEPS => WIDE
light 1 <Multiplier Divider='256'>1</Multiplier>STEPS => BYTE
light 1 <Multiplier Divider='-1'>1</Multiplier>STEPS => BYTE
light 1 <Multiplier>1</Multiplier>STEPS => BAD Missing field Divider. Line: Multiplier
light 1 STEPS => BAD Missing Ambient Light multiplier node. Line: CalibrationData
light 2 STEPS => Format ID of ALS calibration structure is not supported. Only supported format is 1. Line: CalibrationData
)",
                   {{"STEPS", "<Steps NumOfSteps='3'/>"},
                    {"zzz", std::string(24, '0')},
                    {"WIDE",
                     "Invalid multiplier value in XML input file. Value should be between 0 and "
                     "65535. Line: Multiplier"},
                    {"BYTE",
                     "Invalid divider value in XML input file. Value should be between 1 and 255. "
                     "Node: Multiplier"}});
    platform::Console::instance().flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Warning: Ambient Light divider value is set to 0. Changing it to 1. Line: "
              "Multiplier\n");
}

TEST_F(AmbientLightXmlTest, Steps) {
    expectOutcomes(
        R"(
light 1 SCALE(3)THREE</Steps> => 0107fa006403sss
light 1 SCALE(3)FIFTEEN</Steps> => 0107fa006403sss
light 1 SCALE(3)STEP</Steps> => 0107fa006403s0000000000000000
light 1 SCALE(15)FIFTEEN</Steps> => 0107fa00640fsssssssssssssss
light 1 SCALE(2)THREE</Steps> => BAD Invalid value for NumOfSteps. Line: Steps
light 1 SCALE(16)THREE</Steps> => BAD Invalid value for NumOfSteps. Line: Steps
light 1 SCALE()THREE</Steps> => BAD Missing field NumOfSteps. Line: Steps
light 1 SCALE<Steps/> => BAD Missing field NumOfSteps. Line: Steps
light 1 SCALE(3)<step/></Steps> => BAD Unexpected element , Line: step
light 1 SCALE(3)<!--note--></Steps> => BAD Unexpected element , Line: |
light 1 SCALE(3)<?Step 1?></Steps> => BAD Unexpected element , Line: Step
light 1 SCALE(3)FIFTEENSTEP</Steps> => BAD Unexpected element , Line: Step
light 1 SCALE(3)<Step><Lux value='1'/></Step></Steps> => scale node is NULL.
light 1 SCALE(3)<Step><Scale value='1'/></Step></Steps> => lux node is NULL.
light 1 SCALE(3)<Step><scale value='1'/><Lux value='1'/></Step></Steps> => BAD Unexpected element , Line: scale
light 1 SCALE(3)<Step><Scale value='1'/><LUX value='1'/></Step></Steps> => BAD Unexpected element , Line: LUX
light 1 SCALE(3)<Step><Scale value='65536'/><Lux value='1'/></Step></Steps> => RANGE Line: Scale
light 1 SCALE(3)<Step><Scale value='-1'/><Lux value='1'/></Step></Steps> => RANGE Line: Scale
light 1 SCALE(3)<Step><Scale value='1'/><Lux value='65536'/></Step></Steps> => RANGE Line: Lux
light 1 SCALE(3)<Step><Scale/><Lux value='1'/></Step></Steps> => BAD Missing field value. Line: Scale
light 1 SCALE(3)THREE</Steps><VendorData DataLength='0'>words</VendorData> => 0107fa006403sss0000
light 1 SCALE(3)THREE</Steps><VendorData DataLength='1'>abc</VendorData> => BAD BinData size does not match declared length. Line: VendorData
light 1 SCALE(3)THREE</Steps><VendorData DataLength='47'>LONG</VendorData> => Invalid calibration data size
light 1 SCALE(3)THREE</Steps><VendorData DataLength=''/> => BAD Missing field DataLength. Line: VendorData
light 1 SCALE(3)THREE</Steps><VendorData/> => BAD Missing field DataLength. Line: VendorData
)",
        {{"SCALE", "<Multiplier Divider='100'>250</Multiplier>"},
         {"(", "<Steps NumOfSteps='"},
         {")", "'>"},
         {"FIFTEEN", "THREETHREETHREETHREETHREE"},
         {"THREE", "STEPSTEPSTEP"},
         {"STEP", "<Step><Scale value='1'/><Lux value='2'/></Step>"},
         {"sss", "010002000100020001000200"},
         {"03s0", "03010002000"},
         {"LONG", std::string(94, 'a')},
         {"RANGE", "Invalid Scale value in XML input file. Value should be between 0 and 65535."},
         {"|", ""}});
    // No file gets as far without steps: nothing else marks the data as that of a light sensor.
    XmlDocument document;
    ASSERT_EQ(document.loadBytes("<A><Multiplier Divider='1'>1</Multiplier></A>"),
              XmlResult::Success);
    EXPECT_EQ(messageOf<CalibrationException>(
                  [&] { readAmbientLightPayload(*document.firstChild()->asElement(), 1, 0); }),
              "Calibration data node is NULL.");
}

}  // namespace
}  // namespace tavocal::test
