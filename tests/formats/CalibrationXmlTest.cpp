#include "formats/CalibrationXml.h"

#include "base/Text.h"
#include "formats/CalibrationFile.h"

namespace tavocal::test {
namespace {

constexpr LUID kAmbientLight = {0x41, 0, 0, 0, kStaticFlag};

// A block of each kind; calibration.xml is the file that holds them all.
const std::vector<std::pair<LUID, CalibrationBlock>> kBlocks = {
    {{0x73, 1, 0, 1, kStaticFlag},
     {0x00, 0x01,                                                              // FormatId, Version
      0x0C, 0x00, 0x00, 0x00, 0xD8, 0xFF, 0xFF, 0xFF, 0x07, 0x00, 0x01, 0x00,  // offset
      0x00, 0x04, 0x02, 0x00, 0xFF, 0xFF, 0x04, 0x00, 0x01, 0x04, 0x06, 0x00,  // matrix
      0x07, 0x00, 0xFF, 0x7F, 0x00, 0x80, 0x00, 0x04,                          // ScaleFactor
      0x0D, 0x71, 0x03, 0x00,                                                  // axis mapping
      0x02, 0x00, 0xAB, 0x0F}},                                                // vendor data
    {{0x76, 2, 3, 0, kDynamicFlag}, {2, 9, 0xE8, 0x03, 0, 0, 7, 7, 7, 7, 7, 7}},
    {kAmbientLight,
     {1, 0, 0xFA, 0, 100, 3, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 0xFF, 0xFF, 2, 0, 0xAB, 0xCD}},
    {{0x72, 0, 0, 0, 0}, {0, 3, 0x10}},
    {{0x1234, 0, 0, 0, kStaticFlag}, {5, 255, 0x01, 0x02, 0xFE}},
    {{0x73, 1, 2, 0, kStaticFlag}, {200, 4}},
};

std::string withoutLayout(const std::string& text) {
    return replaceAll(replaceAll(text, "    ", ""), "\r\n", "");
}

std::shared_ptr<Sensor> sensorWith(const LUID& luid, const CalibrationBlock& original,
                                   const CalibrationBlock& toWrite = {}) {
    auto sensor = makeSensor(luid);
    sensor->originalCalibration = original;
    sensor->calibrationLoaded = true;
    sensor->calibrationToWrite = toWrite;
    return sensor;
}

using CalibrationXmlTest = CalibrationFile;

TEST_F(CalibrationXmlTest, EachKindOfBlockIsWrittenToTheLetterAndComesBack) {
    Sensors sensors;
    for (const auto& [luid, block] : kBlocks) {
        sensors.push_back(sensorWith(luid, block));
        firmware.blocks[luidText(luid)] = block;
    }
    const std::string text = fileContent(TAVOCAL_TESTS "/formats/calibration.xml");
    EXPECT_EQ(saved(sensors, true), replaceAll(text, "\n", "\r\n"));
    // The firmware's own block keeps all but the white noise.
    CalibrationBlock present(71, 5);
    present[0] = 2;
    firmware.blocks[luidText(kBlocks[1].first)] = present;
    std::copy_n(kBlocks[1].second.begin() + 2, 4, present.begin() + 2);
    const Sensors loaded = load(text);
    ASSERT_EQ(loaded.size(), kBlocks.size());
    for (std::size_t i = 0; i < loaded.size(); ++i) {
        EXPECT_EQ(loaded[i]->getLuid(), kBlocks[i].first);
        EXPECT_EQ(loaded[i]->calibrationToWrite, i == 1 ? present : kBlocks[i].second) << i;
    }
    EXPECT_EQ(saved(loaded, false),
              replaceAll(replaceAll(text, "\n", "\r\n"), "Version=\"9\"", "Version=\"5\""));
}

TEST_F(CalibrationXmlTest, ChoosesBlock) {
    const CalibrationBlock first = {200, 1, 0xA1}, second = {201, 2, 0xA2};
    const auto hasIn = [&](const std::string& part, const CalibrationBlock& original,
                           const CalibrationBlock& toWrite, bool useCurrent) {
        return contains(saved({sensorWith(kAmbientLight, original, toWrite)}, useCurrent), part);
    };
    const std::string none =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Tavo>\r\n    <Calibration/>\r\n</Tavo>\r\n";
    EXPECT_EQ(saved({}, true), none);
    EXPECT_TRUE(hasIn(none, {}, {}, false));
    EXPECT_TRUE(hasIn(none, {}, second, true));
    EXPECT_TRUE(hasIn(">a2<", {}, second, false));
    EXPECT_TRUE(hasIn(">a1<", first, {}, false));
    EXPECT_TRUE(hasIn(">a2<", first, second, false));
    EXPECT_TRUE(hasIn(">a1<", first, second, true));
    const auto refused = sensorWith(kAmbientLight, first);
    refused->calibrationLoaded = false;
    EXPECT_EQ(saved({refused}, true), none);
}

// Type and Flags of the sensor, what it has of the firmware, and the block to write: what the file
// has of it or why there is none.
TEST_F(CalibrationXmlTest, BlocksAtTheirLimits) {
    for (const auto& [given, outcome] : tableOfTest("formats", {{"NIL", std::string(24, '0')}})) {
        const std::size_t semicolon = given.find(';');
        const auto type = static_cast<std::uint16_t>(std::stoi(given.substr(0, 4), nullptr, 16));
        const auto flags = static_cast<std::uint8_t>(given[5] - '0');
        const auto sensor =
            sensorWith({type, 0, 0, 0, flags}, bytesOf(given.substr(7, semicolon - 7)),
                       bytesOf(given.substr(semicolon + 2)));
        std::string text;
        const std::string failure =
            messageOf<CalibrationException>([&] { text = withoutLayout(saved({sensor}, false)); });
        EXPECT_TRUE(failure == outcome || contains(text, outcome))
            << given << ": " << failure << text;
    }
}

TEST_F(CalibrationXmlTest, FilesThatAreNone) {
    EXPECT_EQ(messageOf<CalibrationException>([&] { saveCalibrationXml(folder.path(), {}, true); }),
              "Failed to write to file");
    for (const std::string& path : {std::string(), folder.path("missing.xml"), folder.path()}) {
        EXPECT_EQ(messageOf<CalibrationException>([&] { loadCalibrationXml(path, firmware.sdt); }),
                  "Failed to open XML input file");
    }
    for (const auto& [text, failure] : tableOfTest(
             "formats", {{"GOOD",
                          "<Sensor SensorTypeId='9' SubTypeId='' VendorId='' InstanceId='' "
                          "Flags=''><CalibrationData Version='2' FormatId='1'><OEMCustomData "
                          "DataLength='0'/></CalibrationData></Sensor>"}})) {
        EXPECT_EQ(outcomeOf(text), failure) << text;
    }
}

}  // namespace
}  // namespace tavocal::test
