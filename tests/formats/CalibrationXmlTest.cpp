#include "formats/CalibrationXml.h"

#include "base/Text.h"
#include "sensors/SensorFactory.h"
#include "support/CalibrationFile.h"

namespace tavocal::test {
static std::shared_ptr<Sensor> sensorWith(const LUID& luid, const CalibrationBlock& original,
                                          const CalibrationBlock& toWrite = {}) {
    auto sensor = makeSensor(luid);
    sensor->originalCalibration = original;
    sensor->calibrationLoaded = true;
    sensor->calibrationToWrite = toWrite;
    return sensor;
}

using CalibrationXmlTest = CalibrationFile;

// The blocks that calibration.xml tells. The firmware's own block of the dynamic sensor is another
// one, whose Version and rest stay.
TEST_F(CalibrationXmlTest, EachKindOfBlockIsWrittenToTheLetterAndComesBack) {
    const std::string text =
        replaceAll(fileContent(TAVOCAL_TESTS "/formats/calibration.xml"), "\n", "\r\n");
    Sensors sensors;
    for (const auto& [luidText, hex] : tableOfTest()) {
        LUID luid;
        ASSERT_TRUE(parseLuidText(luidText, luid));
        sensors.push_back(sensorWith(luid, bytesOf(hex)));
        firmware.blocks[luidText] = bytesOf(hex);
    }
    EXPECT_EQ(saved(sensors, true), text);
    CalibrationBlock& present = firmware.blocks["0076000200030001"];
    present[1] = 5;
    std::fill_n(present.begin() + 2, 4, std::uint8_t{0xFF});
    const Sensors loaded = load(text);
    ASSERT_EQ(loaded.size(), sensors.size());
    for (std::size_t i = 0; i < loaded.size(); ++i) {
        EXPECT_EQ(loaded[i]->getLuid(), sensors[i]->getLuid());
        CalibrationBlock expected = sensors[i]->originalCalibration;
        expected[1] = i == 1 ? 5 : expected[1];
        EXPECT_EQ(loaded[i]->calibrationToWrite, expected) << i;
    }
    EXPECT_EQ(saved(loaded, false), replaceAll(text, "Version=\"9\"", "Version=\"5\""));
}

// The block that was loaded and the one to write, whether the current one is wanted; what is saved.
TEST_F(CalibrationXmlTest, ChoosesBlock) {
    for (const auto& [given, part] : tableOfTest()) {
        const std::size_t comma = given.find(',');
        const auto sensor = sensorWith({0x41, 0, 0, 0, 2}, bytesOf(given.substr(0, comma)),
                                       bytesOf(given.substr(comma + 1, 6)));
        const bool useCurrent = given.ends_with("current");
        EXPECT_TRUE(contains(saved({sensor}, useCurrent), part)) << given;
        sensor->calibrationLoaded = false;
        EXPECT_EQ(contains(saved({sensor}, useCurrent), "<Sensor"), part == ">a2<") << given;
    }
}

// The sensor, what it has of the firmware, and the block to write; what the file has of it or why
// there is none.
TEST_F(CalibrationXmlTest, BlocksAtTheirLimits) {
    for (const auto& [given, outcome] : tableOfTest({{"NIL", std::string(24, '0')}})) {
        const std::size_t semicolon = given.find(';');
        LUID luid;
        ASSERT_TRUE(parseLuidText(given.substr(0, 16), luid));
        const auto sensor = sensorWith(luid, bytesOf(given.substr(16, semicolon - 16)),
                                       bytesOf(given.substr(semicolon + 1)));
        std::string text;
        const std::string failure = failureOf(
            [&] { text = replaceAll(replaceAll(saved({sensor}, false), "    ", ""), "\r\n", ""); });
        EXPECT_TRUE(failure == outcome || contains(text, outcome))
            << given << ": " << failure << text;
    }
}

TEST_F(CalibrationXmlTest, FilesThatAreNone) {
    EXPECT_EQ(failureOf([&] { saveCalibrationXml(folder.path(), {}, true); }),
              "Failed to write to file");
    for (const std::string& path : {std::string(), folder.path("missing.xml"), folder.path()}) {
        EXPECT_EQ(failureOf([&] { loadCalibrationXml(path, firmware.sdt); }),
                  "Failed to open XML input file");
    }
    for (const auto& [text, failure] :
         tableOfTest({{"GOOD",
                       "<Sensor SensorTypeId='9' SubTypeId='' VendorId='' InstanceId='' "
                       "Flags=''><CalibrationData Version='2' FormatId='1'><OEMCustomData "
                       "DataLength='0'/></CalibrationData></Sensor>"}})) {
        EXPECT_EQ(outcomeOf(text), failure) << text;
    }
    EXPECT_TRUE(load("<Tavo><?Calibration x?><Calibration><a/></Calibration></Tavo>").empty());
    EXPECT_EQ(messageOf<std::invalid_argument>([&] { load("<Tavo a='&#ABC;'/>"); }),
              "invalid stoi argument");
}

}  // namespace tavocal::test
