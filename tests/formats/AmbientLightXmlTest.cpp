#include "formats/AmbientLightXml.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/Failures.h"
#include "formats/SensorXmlFixture.h"
#include "platform/Console.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal {
namespace {

using test::repeated;

const std::string kStepText = "<Step><Scale value='1'/><Lux value='2'/></Step>";

std::string stepsText(const std::string& count, const std::string& steps) {
    return "<Steps NumOfSteps='" + count + "'>" + steps + "</Steps>";
}

// A valid light payload but for `steps`.
std::string lightText(const std::string& steps) {
    return "<Multiplier Divider='100'>250</Multiplier>" + steps;
}

class AmbientLightXmlTest : public test::SensorXmlFixture {};

TEST_F(AmbientLightXmlTest, ReadsLightData) {
    const std::string three = repeated(kStepText, 3);
    const CalibrationBlock expected = {1, 7, 250, 0, 100, 3, 1, 0, 2, 0, 1, 0, 2, 0, 1, 0, 2, 0};
    const auto steps = [](int count, const std::string& text) {
        return lightText(stepsText(std::to_string(count), text));
    };
    EXPECT_EQ(blockOf(test::kAmbientLight, 1, steps(3, three)), expected);
    EXPECT_EQ(blockOf(test::kAmbientLight, 1, steps(3, repeated(kStepText, 15))), expected);
    EXPECT_EQ(blockOf(test::kAmbientLight, 1, steps(15, repeated(kStepText, 15))).size(), 66U);

    CalibrationBlock oneStep = expected;
    std::fill(oneStep.begin() + 10, oneStep.end(), std::uint8_t{0});
    EXPECT_EQ(blockOf(test::kAmbientLight, 1, steps(3, kStepText)), oneStep);

    CalibrationBlock noVendorData = expected;
    noVendorData.insert(noVendorData.end(), {0, 0});
    EXPECT_EQ(blockOf(test::kAmbientLight, 1,
                      steps(3, three) + "<VendorData DataLength='0'>words</VendorData>"),
              noVendorData);

    CalibrationBlock dividerOne = expected;
    dividerOne[4] = 1;
    EXPECT_EQ(blockOf(test::kAmbientLight, 1,
                      "<Multiplier Divider=''>250</Multiplier>" + stepsText("3", three)),
              dividerOne);
    testing::internal::CaptureStdout();
    EXPECT_EQ(blockOf(test::kAmbientLight, 1,
                      "<Multiplier Divider='0'>250</Multiplier>" + stepsText("3", three)),
              dividerOne);
    platform::Console::instance().flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Warning: Ambient Light divider value is set to 0. Changing it to 1. Line: "
              "Multiplier\n");
}

TEST_F(AmbientLightXmlTest, ChecksLightScale) {
    const std::string steps = stepsText("3", "");
    const std::string multiplierRange =
        "Invalid multiplier value in XML input file. Value should be between 0 and 65535. Line: "
        "Multiplier";
    const std::string dividerRange =
        "Invalid divider value in XML input file. Value should be between 1 and 255. Node: "
        "Multiplier";
    const auto scale = [&steps](const std::string& multiplier, const std::string& divider) {
        return "<Multiplier Divider='" + divider + "'>" + multiplier + "</Multiplier>" + steps;
    };
    expectFailures(
        test::kAmbientLight, 1,
        {{steps, "XML parsing error. Missing Ambient Light multiplier node. Line: CalibrationData"},
         {scale("65536", "1"), multiplierRange},
         {scale("-1", "1"), multiplierRange},
         {scale("", "1"), multiplierRange},
         {scale("1", "256"), dividerRange},
         {scale("1", "-1"), dividerRange},
         {"<Multiplier>1</Multiplier>" + steps,
          "XML parsing error. Missing field Divider. Line: Multiplier"}});
    expectFailures(test::kAmbientLight, 2,
                   {{lightText(steps),
                     "Format ID of ALS calibration structure is not supported. Only supported "
                     "format is 1. Line: CalibrationData"}});
}

TEST_F(AmbientLightXmlTest, ChecksLightSteps) {
    const std::string bad = "XML parsing error. ";
    const std::string unexpected = bad + "Unexpected element , Line: ";
    const std::string countRange = bad + "Invalid value for NumOfSteps. Line: Steps";
    const std::string missingCount = bad + "Missing field NumOfSteps. Line: Steps";
    const std::string valueRange =
        "Invalid Scale value in XML input file. Value should be between 0 and 65535. Line: ";
    const std::string mismatch =
        bad + "BinData size does not match declared length. Line: VendorData";
    const std::string missingLength = bad + "Missing field DataLength. Line: VendorData";
    const auto steps = [](const std::string& text) { return stepsText("3", text); };
    const auto step = [&steps](const std::string& text) {
        return steps("<Step>" + text + "</Step>");
    };
    const std::string three = steps(repeated(kStepText, 3));
    std::vector<Case> cases = {
        {"<Steps/>", missingCount},
        {stepsText("", ""), missingCount},
        {stepsText("2", repeated(kStepText, 2)), countRange},
        {stepsText("16", repeated(kStepText, 16)), countRange},
        {steps("<step/>"), unexpected + "step"},
        {steps("<!--note-->"), unexpected},
        {steps("<?Step 1?>"), unexpected + "Step"},
        {steps(repeated(kStepText, 16)), unexpected + "Step"},
        {step("<Lux value='1'/>"), "scale node is NULL."},
        {step("<Scale value='1'/>"), "lux node is NULL."},
        {step("<scale value='1'/><Lux value='1'/>"), unexpected + "scale"},
        {step("<Scale value='1'/><LUX value='1'/>"), unexpected + "LUX"},
        {step("<Scale value='65536'/><Lux value='1'/>"), valueRange + "Scale"},
        {step("<Scale value='1'/><Lux value='-1'/>"), valueRange + "Lux"},
        {step("<Scale/><Lux value='1'/>"), bad + "Missing field value. Line: Scale"},
        {three + "<VendorData/>", missingLength},
        {three + "<VendorData DataLength=''/>", missingLength},
        {three + "<VendorData DataLength='1'>abc</VendorData>", mismatch},
        {three + "<VendorData DataLength='-1'/>", mismatch},
        {three + "<VendorData DataLength='47'>" + repeated("ab", 47) + "</VendorData>",
         "Invalid calibration data size"}};
    for (Case& c : cases) {
        c.content = lightText(c.content);
    }
    expectFailures(test::kAmbientLight, 1, cases);

    // No file gets as far without steps: nothing else marks the data as that of a light sensor.
    XmlDocument document;
    ASSERT_EQ(document.loadBytes("<Data>" + lightText("") + "</Data>"), XmlResult::Success);
    try {
        readAmbientLightPayload(*document.firstChild()->asElement(), 1, 0);
        FAIL();
    } catch (const CalibrationException& failure) {
        EXPECT_STREQ(failure.what(), "Calibration data node is NULL.");
    }
}

}  // namespace
}  // namespace tavocal
