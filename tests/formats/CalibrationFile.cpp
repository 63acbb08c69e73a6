#include "formats/CalibrationFile.h"

#include <sstream>

#include "base/Text.h"
#include "formats/CalibrationXml.h"

namespace tavocal::test {

namespace {

// The attributes of a "Sensor", in place of its kind, and the text of its LUID.
const std::map<std::string, std::pair<std::string, std::string>> kKinds = {
    {"static", {"115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='2'", "0073000100020002"}},
    {"dynamic", {"115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='1'", "0073000100020001"}},
    {"both", {"115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='3'", "0073000100020003"}},
    {"plain", {"114' SubTypeId='' VendorId='' InstanceId='' Flags=''", "0072000000000000"}},
    {"light", {"65' SubTypeId='' VendorId='' InstanceId='' Flags='2'", "0041000000000002"}},
    {"generic", {"4660' SubTypeId='' VendorId='' InstanceId='' Flags='2'", "1234000000000002"}}};

const TextTable kMeanings = {{"BAD", "XML parsing error."},
                             {"SCALE", "<Multiplier Divider='100'>250</Multiplier>"},
                             {"LEVELS", "<Steps NumOfSteps='3'>STEPSTEPSTEP</Steps>"},
                             {"STEP", "<Step><Scale value='1'/><Lux value='2'/></Step>"}};

}  // namespace

std::string CalibrationFile::saved(const Sensors& sensors, bool useCurrent) const {
    saveCalibrationXml(folder.path("saved.xml"), sensors, useCurrent);
    return fileContent(folder.path("saved.xml"));
}

CalibrationFile::Sensors CalibrationFile::load(const std::string& text) {
    return loadCalibrationXml(folder.write("loaded.xml", text), firmware.sdt);
}

std::string CalibrationFile::outcomeOf(const std::string& text) {
    std::string block;
    const std::string failure = messageOf<CalibrationException>([&] {
        const CalibrationBlock bytes = load(text).at(0)->calibrationToWrite;
        block = hexText(bytes.data(), bytes.size());
    });
    return failure == kNoFailure ? block : failure;
}

void CalibrationFile::expectTableOfTest() {
    for (const auto& [given, outcome] : tableOfTest("formats", kMeanings)) {
        std::istringstream words(given);
        std::string kind, formatId, content;
        std::getline(words >> kind >> formatId >> std::ws, content);
        const auto& [attributes, luid] = kKinds.at(kind);
        EXPECT_EQ(outcomeOf("<Tavo><Calibration><Sensor SensorTypeId='" + attributes +
                            "><CalibrationData Version='7' FormatId='" + formatId + "'>" + content +
                            "</CalibrationData></Sensor></Calibration></Tavo>"),
                  replaceAll(outcome, "LUID", luid))
            << given.substr(0, 200);
    }
}

}  // namespace tavocal::test
