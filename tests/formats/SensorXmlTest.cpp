#include "formats/SensorXml.h"

#include "sensors/SensorFactory.h"
#include "support/CalibrationFile.h"
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
    for (const auto& [name, limits] : tableOfTest()) {
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
    const std::string name = "<CalibrationData ";
    EXPECT_EQ(outcomeOf(replaceAll(text, name, "<?CalibrationData x?>" + name)),
              "XML parsing error. Missing field Version. Line: CalibrationData");
    EXPECT_EQ(outcomeOf(replaceAll(text, "CalibrationData", "Data")),
              "Failed to load XML input file. Invalid CalibrationData node name.");
}

TEST_F(SensorXmlTest, WhatASensorCanHold) {
    expectTableOfTest();
    EXPECT_TRUE(firmware.kelu->written().empty());
    const XmlElement data(L"CalibrationData");
    EXPECT_EQ(failureOf([&] { makeSensor({})->readCalibrationXml(data, 0, 0); }),
              "Error. No calibration data format is available");
}

}  // namespace tavocal::test
