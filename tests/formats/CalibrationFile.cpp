#include "formats/CalibrationFile.h"

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/CalibrationXml.h"
#include "support/MessageOf.h"

namespace tavocal::test {

namespace {

std::string sensorText(const LUID& luid, const std::string& formatId, const std::string& content) {
    const auto attribute = [](const std::string& name, int value) {
        return " " + name + "='" + std::to_string(value) + "'";
    };
    return "<Sensor" + attribute("SensorTypeId", luid.SensorTypeId) +
           attribute("SubTypeId", luid.SubTypeId) + attribute("VendorId", luid.VendorId) +
           attribute("InstanceId", luid.InstanceId) + attribute("Flags", luid.Flags) +
           "><CalibrationData Version='7' FormatId='" + formatId + "'>" + content +
           "</CalibrationData></Sensor>";
}

}  // namespace

LUID luidOf(const std::string& kind) {
    return std::map<std::string, LUID>{{"static", kStaticAccelerometer},
                                       {"dynamic", kDynamicAccelerometer},
                                       {"both", {0x73, 0, 0, 0, kStaticFlag | kDynamicFlag}},
                                       {"plain", kPlainInertial},
                                       {"light", kAmbientLight},
                                       {"generic", kGeneric}}
        .at(kind);
}

std::string fileText(const std::string& sensors) {
    return "<Tavo><Calibration>" + sensors + "</Calibration></Tavo>";
}

CalibrationFile::CalibrationFile() {
    firmware.blocks[luidText(kStaticAccelerometer)] = CalibrationBlock(40, 0);
    firmware.blocks[luidText(kPlainInertial)] = CalibrationBlock(40, 0);
    firmware.blocks[luidText(kDynamicAccelerometer)] = CalibrationBlock(12, 1);
    CalibrationBlock light(18, 0);
    light[0] = 1;
    light[5] = 3;
    firmware.blocks[luidText(kAmbientLight)] = light;
}

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

void CalibrationFile::expectOutcomes(const std::string& rows, const TextTable& meanings) {
    TextTable all = meanings;
    all.insert(all.end(), {{"BAD", "XML parsing error."},
                           {"NUMBER(", "Conversion error. Value "},
                           {"NONE)", " is not a valid number"}});
    for (const auto& [given, expected] : textTable(rows, all)) {
        const std::size_t first = given.find(' ');
        const std::size_t second = given.find(' ', first + 1);
        const LUID luid = luidOf(given.substr(0, first));
        const std::string formatId = given.substr(first + 1, second - first - 1);
        EXPECT_EQ(outcomeOf(fileText(sensorText(luid, formatId, given.substr(second + 1)))),
                  replaceAll(expected, "LUID", luidText(luid)))
            << given.substr(0, 200);
    }
}

}  // namespace tavocal::test
