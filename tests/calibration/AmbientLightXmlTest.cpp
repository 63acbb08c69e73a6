#include "calibration/AmbientLightXml.h"

#include "support/CalibrationFile.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

using AmbientLightXmlTest = CalibrationFile;

TEST_F(AmbientLightXmlTest, Scale) {
    EXPECT_EQ(printedBy([this] { expectTableOfTest(); }),
              "Warning: Ambient Light divider value is set to 0. Changing it to 1. Line: "
              "Multiplier\n");
}

TEST_F(AmbientLightXmlTest, Steps) {
    expectTableOfTest();
    // No file gets as far without steps: nothing else marks the data as that of a light sensor.
    XmlDocument document;
    ASSERT_EQ(document.loadBytes("<A><Multiplier Divider='1'>1</Multiplier></A>"),
              XmlResult::Success);
    EXPECT_EQ(
        failureOf([&] { readAmbientLightPayload(*document.firstChild()->asElement(), 1, 0); }),
        "Calibration data node is NULL.");
}

}  // namespace tavocal::test
