#pragma once

#include <map>
#include <sstream>

#include "base/Text.h"
#include "firmware/FakeKelu.h"
#include "firmware/SDT.h"
#include "formats/CalibrationXml.h"
#include "sensors/model/Sensor.h"
#include "support/Lines.h"
#include "support/Outcome.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {

// A firmware that answers for the blocks of its sensors and for form factor and hinge. It refuses
// any sensor that it has no block for.
struct BlockFirmware {
    explicit BlockFirmware(std::map<std::string, CalibrationBlock> known)
        : blocks(std::move(known)) {
        kelu->onWrite = [this](const Bytes& request) { kelu->say(answerTo(request)); };
    }

    std::map<std::string, CalibrationBlock> blocks;  // by LUID text
    std::uint8_t formFactor = 4, hinge = 3;
    const std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    SDT sdt{[this] { return kelu; }};

    Bytes answerTo(const Bytes& request) const {
        const bool asksForSettings = request.at(13) == 0x04;
        if (asksForSettings) {
            return ByteWriter().u8(0x84).zeros(8).u8(formFactor).zeros(3).u8(hinge).take();
        }
        const auto found = blocks.find(luidText(luidFromBytes(request.data() + 4)));
        if (found == blocks.end()) {
            return {0x84, 0, 0, 1};
        }
        const auto size = static_cast<std::uint16_t>(found->second.size());
        return ByteWriter().u8(0x84).zeros(21).u16(size).append(found->second).take();
    }
};

// The attributes of a "Sensor", in place of its kind, and the text of its LUID.
inline const std::map<std::string, std::pair<std::string, std::string>> kKinds = {
    {"static", {"115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='2'", "0073000100020002"}},
    {"dynamic", {"115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='1'", "0073000100020001"}},
    {"both", {"115' SubTypeId='2' VendorId='1' InstanceId='0' Flags='3'", "0073000100020003"}},
    {"plain", {"114' SubTypeId='' VendorId='' InstanceId='' Flags=''", "0072000000000000"}},
    {"light", {"65' SubTypeId='' VendorId='' InstanceId='' Flags='2'", "0041000000000002"}},
    {"generic", {"4660' SubTypeId='' VendorId='' InstanceId='' Flags='2'", "1234000000000002"}}};

inline const TextTable kMeanings = {{"BAD", "XML parsing error."},
                                    {"SCALE", "<Multiplier Divider='100'>250</Multiplier>"},
                                    {"LEVELS", "<Steps NumOfSteps='3'>STEPSTEPSTEP</Steps>"},
                                    {"BIG", std::string(131072, 'a')},
                                    {"STEP", "<Step><Scale value='1'/><Lux value='2'/></Step>"}};

// A folder for calibration files, beside a firmware with a block for each kind of sensor but the
// generic one.
class CalibrationFile : public testing::Test {
  protected:
    using Sensors = std::vector<std::shared_ptr<Sensor>>;

    std::string saved(const Sensors& sensors, bool useCurrent) const {
        saveCalibrationXml(folder.path("saved.xml"), sensors, useCurrent);
        return fileContent(folder.path("saved.xml"));
    }
    Sensors load(const std::string& text) {
        return loadCalibrationXml(folder.write("loaded.xml", text), firmware.sdt);
    }
    // The block to write of the file's first sensor in hexadecimal, or the failure.
    std::string outcomeOf(const std::string& text) {
        std::string block;
        const std::string failure = failureOf([&] {
            const CalibrationBlock bytes = load(text).at(0)->calibrationToWrite;
            block = hexText(bytes.data(), bytes.size());
        });
        return failure == kNoFailure ? block : failure;
    }
    // Rows "kind FormatId content => outcome" of a file with one "CalibrationData", whose Version
    // is 7. A kind is static, dynamic, both (flags), plain (inertial), light or generic. BAD means
    // "XML parsing error.", LUID the sensor's, SCALE, LEVELS and STEP some of a light sensor.
    void expectTableOfTest() {
        for (const auto& [given, outcome] : tableOfTest(kMeanings)) {
            std::istringstream words(given);
            std::string kind, formatId, content;
            std::getline(words >> kind >> formatId >> std::ws, content);
            const auto& [attributes, luid] = kKinds.at(kind);
            EXPECT_EQ(outcomeOf("<Tavo><Calibration><Sensor SensorTypeId='" + attributes +
                                "><CalibrationData Version='7' FormatId='" + formatId + "'>" +
                                content + "</CalibrationData></Sensor></Calibration></Tavo>"),
                      replaceAll(outcome, "LUID", luid))
                << given.substr(0, 200);
        }
    }
    // The file that was loaded last.
    std::string lastLoaded() const { return fileContent(folder.path("loaded.xml")); }

    BlockFirmware firmware{
        {{"0073000100020002", CalibrationBlock(40, 0)},
         {"0073000100020001", CalibrationBlock(12, 1)},
         {"0072000000000000", CalibrationBlock(40, 0)},
         {"0041000000000002", {1, 0, 1, 0, 1, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}}};
    const TempFolder folder;
};

}  // namespace tavocal::test
