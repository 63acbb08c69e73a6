#include "formats/CalibrationXml.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <utility>

#include "base/Failures.h"
#include "base/LittleEndian.h"
#include "base/Text.h"
#include "formats/CalibrationFile.h"
#include "sensors/Sensor.h"
#include "xml/XmlElement.h"

namespace tavocal {
namespace {

using test::sensorText;

// The block and the entry of a secondary accelerometer, with two bytes of vendor data.
const CalibrationBlock kStaticBlock = {
    0x00, 0x01,                                                              // FormatId, Version
    0x0C, 0x00, 0x00, 0x00, 0xD8, 0xFF, 0xFF, 0xFF, 0x07, 0x00, 0x00, 0x00,  // offset
    0x00, 0x04, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00,  // matrix
    0x00, 0x00, 0xFF, 0x7F, 0x00, 0x80,                                      //
    0xFF, 0xFF,                                                              // ScaleFactor
    0x0D, 0x01, 0x01, 0x00,                                                  // axis mapping
    0x02, 0x00, 0xAB, 0x0F};                                                 // vendor data

const std::string kStaticFile =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
    "<Tavo>\r\n"
    "    <Calibration>\r\n"
    "        <Sensor SensorTypeId=\"115\" SubTypeId=\"0\" VendorId=\"1\" InstanceId=\"1\""
    " Flags=\"2\">\r\n"
    "            <!--Below are the calibration parameters to be applied to raw readings. Note that"
    " it is not an issue that after calibration, sensor readings might exceed original range.-->"
    "\r\n"
    "            <CalibrationData Version=\"1\" FormatId=\"0\">\r\n"
    "                <!--Axis mapping matrix maps the raw axes on sensor, towards axis system on"
    " device after calibration.-->\r\n"
    "                <AxisMapping>\r\n"
    "                    <XX>1</XX>\r\n"
    "                    <XY>-1</XY>\r\n"
    "                    <XZ>0</XZ>\r\n"
    "                    <YX>0</YX>\r\n"
    "                    <YY>1</YY>\r\n"
    "                    <YZ>0</YZ>\r\n"
    "                    <ZX>0</ZX>\r\n"
    "                    <ZY>0</ZY>\r\n"
    "                    <ZZ>1</ZZ>\r\n"
    "                </AxisMapping>\r\n"
    "                <!--This applies to the raw readings so they will be scaled to get the"
    " calibrated values. The actual scale is the values in matrix divided by the ScaleFactor.-->"
    "\r\n"
    "                <Matrix>\r\n"
    "                    <Mat11>1024</Mat11>\r\n"
    "                    <Mat12>0</Mat12>\r\n"
    "                    <Mat13>-1</Mat13>\r\n"
    "                    <Mat21>0</Mat21>\r\n"
    "                    <Mat22>1024</Mat22>\r\n"
    "                    <Mat23>0</Mat23>\r\n"
    "                    <Mat31>0</Mat31>\r\n"
    "                    <Mat32>32767</Mat32>\r\n"
    "                    <Mat33>-32768</Mat33>\r\n"
    "                    <ScaleFactor>65535</ScaleFactor>\r\n"
    "                </Matrix>\r\n"
    "                <!--Offset will be removed from the raw readings to achieve the calibration."
    "-->\r\n"
    "                <Offset>\r\n"
    "                    <OffsetX>12</OffsetX>\r\n"
    "                    <OffsetY>-40</OffsetY>\r\n"
    "                    <OffsetZ>7</OffsetZ>\r\n"
    "                </Offset>\r\n"
    "                <VendorData DataLength=\"2\">ab0f</VendorData>\r\n"
    "            </CalibrationData>\r\n"
    "        </Sensor>\r\n"
    "    </Calibration>\r\n"
    "</Tavo>\r\n";

constexpr LUID kSecondAccelerometer = {0x73, 1, 0, 1, kStaticFlag};

std::shared_ptr<Sensor> sensorWith(const LUID& luid, const CalibrationBlock& original) {
    auto sensor = makeSensor(luid);
    sensor->setCalibrationData(original);
    return sensor;
}

// A round trip's blocks; a failing case prints the seed.
class RandomBlock {
  public:
    explicit RandomBlock(unsigned seed) : trace(__FILE__, __LINE__, seed), engine(seed) {}

    int upTo(int highest) { return std::uniform_int_distribution<int>(0, highest)(engine); }
    bool coin() { return upTo(1) == 1; }

    CalibrationBlock bytes(std::size_t count) {
        CalibrationBlock block(count);
        for (auto& byte : block) {
            byte = static_cast<std::uint8_t>(upTo(255));
        }
        return block;
    }

    CalibrationBlock inFormat(int formatId, std::size_t size) {
        CalibrationBlock block = bytes(size);
        block[0] = static_cast<std::uint8_t>(formatId);
        return block;
    }

    CalibrationBlock staticBlock() {
        const int vendorBytes = coin() ? upTo(300) : 0;
        CalibrationBlock block = inFormat(0, 40 + static_cast<std::size_t>(vendorBytes));
        block[33] &= 0x7F;  // a larger ScaleFactor can't be read back
        std::uint32_t mapping = 0;
        for (unsigned k = 0; k < 9; ++k) {
            mapping |= std::array<std::uint32_t, 3>{0, 1, 3}.at(static_cast<std::size_t>(upTo(2)))
                       << (2 * k);
        }
        writeU32(block, 34, mapping);
        writeU16(block, 38, static_cast<std::uint16_t>(vendorBytes));
        return block;
    }

    // At most 66 bytes.
    CalibrationBlock lightBlock() {
        const int steps = 3 + upTo(9);
        const std::size_t end = 6 + 4 * static_cast<std::size_t>(steps);
        const int vendorBytes = upTo(66 - 2 - static_cast<int>(end));
        const bool hasVendorData = coin();
        CalibrationBlock block =
            inFormat(1, hasVendorData ? end + 2 + static_cast<std::size_t>(vendorBytes) : end);
        block[4] = static_cast<std::uint8_t>(1 + upTo(254));
        block[5] = static_cast<std::uint8_t>(steps);
        if (hasVendorData) {
            writeU16(block, end, static_cast<std::uint16_t>(vendorBytes));
        }
        return block;
    }

  private:
    testing::ScopedTrace trace;
    std::mt19937 engine;
};

class CalibrationXmlTest : public testing::Test {
  protected:
    // The block that comes back from the file of a sensor which has this one.
    CalibrationBlock roundTrip(const LUID& luid, const CalibrationBlock& block) {
        file.firmware.blocks.emplace(luidText(luid), block);
        const auto loaded = file.load(file.saved({sensorWith(luid, block)}, true));
        EXPECT_EQ(loaded.size(), 1U);
        EXPECT_EQ(loaded.at(0)->getLuid(), luid);
        return loaded.at(0)->calibrationToWrite;
    }

    std::string saveFailure(const std::shared_ptr<Sensor>& sensor) {
        try {
            file.saved({sensor}, false);
        } catch (const CalibrationException& failure) {
            return failure.what();
        }
        return "none";
    }

    test::CalibrationFile file;
};

TEST_F(CalibrationXmlTest, WritesStaticBlock) {
    EXPECT_EQ(file.saved({sensorWith(kSecondAccelerometer, kStaticBlock)}, true), kStaticFile);
}

TEST_F(CalibrationXmlTest, BlocksComeBackAsTheyWere) {
    for (unsigned seed = 0; seed < 15; ++seed) {
        RandomBlock random(seed);
        file.firmware.blocks.clear();
        const CalibrationBlock still = random.staticBlock();
        EXPECT_EQ(roundTrip(test::kStaticAccelerometer, still), still);
        const CalibrationBlock light = random.lightBlock();
        EXPECT_EQ(roundTrip(test::kAmbientLight, light), light);
        const std::size_t size = 2 + static_cast<std::size_t>(random.upTo(100));
        for (const LUID& luid : {test::kStaticAccelerometer, test::kPlainInertial,
                                 test::kAmbientLight, test::kGeneric}) {
            const CalibrationBlock custom = random.inFormat(128 + random.upTo(127), size);
            EXPECT_EQ(roundTrip(luid, custom), custom);
        }
        const CalibrationBlock generic = random.bytes(size);
        EXPECT_EQ(roundTrip(test::kGeneric, generic), generic);
        const CalibrationBlock plain = random.inFormat(0, size);
        EXPECT_EQ(roundTrip(test::kPlainInertial, plain), plain);
    }
}

TEST_F(CalibrationXmlTest, WhiteNoiseGoesIntoFirmwaresOwnBlock) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        RandomBlock random(seed);
        CalibrationBlock saved = random.inFormat(1, 12);
        saved[5] &= 0x7F;  // the reader takes signed numbers
        CalibrationBlock present = random.inFormat(1, 66);
        file.firmware.blocks[luidText(test::kDynamicAccelerometer)] = present;
        const CalibrationBlock written = roundTrip(test::kDynamicAccelerometer, saved);
        std::copy(saved.begin() + 2, saved.begin() + 6, present.begin() + 2);
        EXPECT_EQ(written, present);
    }
}

TEST_F(CalibrationXmlTest, ChoosesBlock) {
    auto sensor = makeSensor(test::kGeneric);
    EXPECT_EQ(sensor->sensorToXml(true), nullptr);
    EXPECT_EQ(sensor->sensorToXml(false), nullptr);
    sensor->calibrationToWrite = {1, 2, 3};
    EXPECT_EQ(sensor->sensorToXml(true), nullptr);
    EXPECT_NE(sensor->sensorToXml(false), nullptr);
    sensor->originalCalibration = {4, 5, 6};
    EXPECT_EQ(sensor->sensorToXml(true), nullptr) << "not accepted";
    const std::string nothing = file.saved({sensor}, true);
    EXPECT_EQ(nothing,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Tavo>\r\n    <Calibration/>\r\n"
              "</Tavo>\r\n");

    auto light = sensorWith(test::kAmbientLight, {200, 1, 0xA1});
    light->calibrationToWrite = {201, 2, 0xB1, 0xB2};
    const std::string current = file.saved({sensor, light}, true);
    EXPECT_TRUE(contains(current,
                         "<CalibrationData Version=\"1\" FormatId=\"200\">\r\n"
                         "                <OEMCustomData DataLength=\"1\">a1<"));
    const std::string result = file.saved({sensor, light}, false);
    EXPECT_TRUE(contains(result, "<OEMCustomData DataLength=\"2\">b1b2</OEMCustomData>"));
    EXPECT_TRUE(contains(result, "<OEMCustomData DataLength=\"1\">03</OEMCustomData>"));
}

TEST_F(CalibrationXmlTest, WritesLightSteps) {
    const std::string written = file.saved(
        {sensorWith(test::kAmbientLight, {1, 0, 0xFA, 0, 100, 3,    1,    0, 2, 0,    3,
                                          0, 4, 0,    5, 0,   0xFF, 0xFF, 2, 0, 0xAB, 0xCD})},
        true);
    EXPECT_TRUE(contains(
        written,
        "                <!--The following represents the scale the sensor data will be multiplied "
        "by. The scale is a floating number is represented by multiplier/divider. The final result "
        "is Lux value read from sensor * (multiplier/divider)-->\r\n"
        "                <Multiplier Divider=\"100\">250</Multiplier>\r\n"
        "                <Steps NumOfSteps=\"3\">\r\n"
        "                    <Step>\r\n"
        "                        <Scale value=\"1\"/>\r\n"
        "                        <Lux value=\"2\"/>\r\n"
        "                    </Step>\r\n"));
    EXPECT_TRUE(contains(written,
                         "                        <Scale value=\"5\"/>\r\n"
                         "                        <Lux value=\"65535\"/>\r\n"
                         "                    </Step>\r\n"
                         "                </Steps>\r\n"
                         "                <VendorData DataLength=\"2\">abcd</VendorData>\r\n"))
        << written;
}

TEST_F(CalibrationXmlTest, WritesNewLightBlockWithoutVendorData) {
    auto light = makeSensor(test::kAmbientLight);
    light->calibrationToWrite = CalibrationBlock(66, 0);
    light->calibrationToWrite[0] = 1;
    light->calibrationToWrite[5] = 1;
    const std::string written = file.saved({light}, false);
    EXPECT_TRUE(contains(written, "NumOfSteps=\"1\""));
    EXPECT_FALSE(contains(written, "VendorData"));
}

TEST_F(CalibrationXmlTest, RefusesBlocksThatHaveNoXml) {
    const CalibrationBlock good = {1, 0, 1, 0, 1, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const CalibrationBlock fewSteps = {1, 0, 1, 0, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0};
    CalibrationBlock vendorTooLong(40, 0);
    vendorTooLong[38] = 1;
    struct Case {
        LUID luid;
        CalibrationBlock original;
        CalibrationBlock block;
        const char* failure;
    };
    for (const Case& c : {
             Case{test::kGeneric, {}, {200}, "Invalid calibration data"},
             Case{test::kStaticAccelerometer,
                  {},
                  CalibrationBlock(40, 1),
                  "XML parsing error. Unsupported format of calibration data"},
             Case{test::kStaticAccelerometer,
                  {},
                  CalibrationBlock(39, 0),
                  "Invalid calibration data"},
             Case{test::kStaticAccelerometer, {}, vendorTooLong, "Invalid calibration data"},
             Case{test::kDynamicAccelerometer,
                  {},
                  CalibrationBlock(5, 1),
                  "Invalid calibration data"},
             Case{test::kAmbientLight,
                  {},
                  CalibrationBlock(18, 0),
                  "Unsupported format of calibration data"},
             Case{test::kAmbientLight, {}, {1, 0, 1, 0, 1}, "Invalid calibration data"},
             Case{test::kAmbientLight, {}, {1, 0, 1, 0, 1, 3, 0, 0}, "Invalid calibration data"},
             Case{test::kAmbientLight, {1, 0}, good, "Invalid calibration data"},
             Case{test::kAmbientLight, fewSteps, good,
                  "Invalid Ambient Light Sensor calibration data: not enough ALR steps"},
             Case{test::kAmbientLight, good, fewSteps, "Invalid calibration data"},
         }) {
        auto sensor = makeSensor(c.luid);
        sensor->originalCalibration = c.original;
        sensor->calibrationToWrite = c.block;
        EXPECT_EQ(saveFailure(sensor), c.failure) << hexText(c.block.data(), c.block.size());
    }
}

TEST_F(CalibrationXmlTest, FailsToWriteWhereItCannot) {
    try {
        saveCalibrationXml(file.folder.path(), {}, true);
        FAIL() << "a folder was written";
    } catch (const CalibrationException& failure) {
        EXPECT_STREQ(failure.what(), "Failed to write to file");
    }
}

TEST_F(CalibrationXmlTest, FailsToLoadWhatIsNoCalibrationFile) {
    for (const std::string& path :
         {std::string(), file.folder.path("missing.xml"), file.folder.path()}) {
        try {
            loadCalibrationXml(path, file.firmware.sdt);
            ADD_FAILURE() << path;
        } catch (const CalibrationException& failure) {
            EXPECT_STREQ(failure.what(), "Failed to open XML input file");
        }
    }
    const std::string badFile = "Failed to load XML input file";
    for (const auto& [text, failure] : std::vector<std::pair<std::string, std::string>>{
             {"<Tavo></Calibration>", badFile},
             {"<Tavo a='&#ABC;'/>", badFile},
             {"", badFile + ". Tavo root node could not be located"},
             {"<?Tavo a?><Calibration/>", badFile + ". Tavo root node could not be located"},
             {"<Tavo><Sensor/></Tavo>", badFile + ". Calibration node could not be located"},
             {"<tavo><calibration><sensor/></calibration></tavo>",
              badFile + ". Invalid Sensor node name: sensor"},
             {"<Tavo><Calibration><!-- a note --></Calibration></Tavo>",
              badFile + ". Invalid Sensor node name: "},
             {"<Tavo><Calibration>words</Calibration></Tavo>",
              badFile + ". Invalid Sensor node name: "},
         }) {
        EXPECT_EQ(file.failureOf(text), failure) << text;
    }
    EXPECT_TRUE(file.load("<Tavo><Calibration/></Tavo>").empty());
}

TEST_F(CalibrationXmlTest, LoadsEverySensorOrNone) {
    const std::string good =
        sensorText(test::kGeneric, 200, "<OEMCustomData DataLength='1'>AB</OEMCustomData>");
    const std::string bad = sensorText(test::kGeneric, 200, "");
    const auto sensors =
        file.load("<Tavo><Calibration>" + good + "\n" + good + "</Calibration></Tavo>");
    ASSERT_EQ(sensors.size(), 2U);
    EXPECT_EQ(sensors[1]->calibrationToWrite, (CalibrationBlock{200, 7, 0xAB}));
    EXPECT_EQ(file.sensorFailure(good + bad),
              "XML parsing error. No calibration data was specified for sensor 1234000000000002. "
              "Line: CalibrationData");
}

TEST_F(CalibrationXmlTest, PassesFailureOfFirmwareOn) {
    EXPECT_THROW(file.loadSensor(sensorText(test::kStaticAccelerometer, 0, "<Offset/>")),
                 SmhiException);
}

}  // namespace
}  // namespace tavocal
