#include "formats/CsvParser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "base/Text.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "support/Lines.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {
const std::string kHeader =
    "time[ms],Accelerometer_X[g0],Accelerometer_Y[g0],Accelerometer_Z[g0]\n";

class CsvParserTest : public testing::Test {
  protected:
    std::vector<Sample> read(const std::string& text) {
        folder.write("dataDumpAccelerometer.csv", text);
        return CsvParser().readFromFile(dumps, {sensor}, true)[sensor];
    }
    // With FILE in place of the path.
    std::string failureOf(const std::shared_ptr<Sensor>& read) {
        const std::string failure =
            messageOf<std::exception>([&] { CsvParser().readFromFile(dumps, {read}, true); });
        return replaceAll(failure, dumps + read->getDisplayName() + ".csv", "FILE");
    }

    const TempFolder folder;
    const std::string dumps = folder.path() + "\\dataDump";
    std::shared_ptr<Sensor> sensor = makeSensor({0x73, 1, 0, 0, kStaticFlag});
    std::shared_ptr<Sensor> second = makeSensor({0x73, 1, 0, 1, kStaticFlag});
    std::shared_ptr<Sensor> light = makeSensor({0x41, 0, 0, 0, kStaticFlag});
};

TEST_F(CsvParserTest, WritesEachSensorToTheLetter) {
    sensor->formFactor = 3;
    second->formFactor = 6;
    second->hinge = 4;
    second->samplingUnit = Unit::mg0;
    CsvParser().writeToFile(folder.path("missing") + "\\", {{sensor, {}}});
    CsvParser().writeToFile(
        dumps + ".csv",
        {{sensor, {{1000.0, {0.012, -0.004, 0.998}}, {1020.0, {}}, {1e7, {-0.0, 1e9, NAN}}}},
         {second, {}},
         {light, {{1000.0, {120.0}}}}});
    for (const auto& [name, content] : tableOfTest()) {
        EXPECT_EQ(fileContent(folder.path(name)), content);
    }
}

TEST_F(CsvParserTest, ReadsWhatIsWiderThanWhatItWrites) {
    const std::string text =
        "#c\n#c\nLUID=0073ABCD12340001F?\n\n#c\n\nFORMFACTOR=MID\nHINGE=TOP\n" + kHeader +
        "#c\n\n1.9,1,-2.5,3\n1, 2,+3,0x10\n5\n010,1e1,2,3";
    for (const std::string& spelling : {text, replaceAll(text, "\n", "\r\n")}) {
        const std::vector<Sample> samples = read(spelling);
        ASSERT_EQ(samples.size(), 4U);
        EXPECT_EQ(samples[0].values, (Vector{1.0, -2.5, 3.0}));
        EXPECT_EQ(samples[1].values, (Vector{2.0, 3.0, 16.0}));
        EXPECT_TRUE(samples[2].values.empty());
        EXPECT_EQ(sensor->formFactor, 5);
        EXPECT_EQ(sensor->hinge, 1);
        EXPECT_EQ(sensor->getLuid(), (LUID{0x73, 0xABCD, 0x1234, 0, 1}));
    }
    sensor->luid = {0x73, 1, 0, 0, kStaticFlag};
    CsvParser().readFromFile(dumps, {sensor}, false);
    EXPECT_EQ(sensor->getLuid(), (LUID{0x73, 1, 0, 0, kStaticFlag}));
    EXPECT_TRUE(read("\n" + kHeader).empty());
    EXPECT_TRUE(read("FORMFACTOR=odd\nHINGE=\n" + kHeader).empty());
    EXPECT_EQ(sensor->formFactor, 5);
}

TEST_F(CsvParserTest, RowsAndLinesMayHaveAnyLength) {
    const std::string digits(50000, '9');
    const std::string nul(1, '\0');
    const std::string rows = "#" + digits + nul + "\n" + std::string(50000, '\n') + kHeader;
    EXPECT_EQ(read(rows + "1,0." + digits + ",2,3").at(0).values, (Vector{1.0, 2.0, 3.0}));
    EXPECT_EQ(read(rows + replaceAll(digits, "9", "1\n")).size(), digits.size());
    for (const auto& [row, failure] :
         {std::pair<std::string, std::string>{std::string(50000, ','), "Unexpected number of"},
          {digits + ",1", "Unexpected number of"},
          {"1,2," + digits + "x,4", "CSV parsing error. Invalid value 9999"},
          {"1,2,3" + nul + ",4", "CSV parsing error. Invalid value 3"},
          {nul + ",2,3,4", "CSV parsing error. Invalid timestamp value "}}) {
        folder.write("dataDumpAccelerometer.csv", rows + row);
        EXPECT_EQ(failureOf(sensor).substr(0, failure.size()), failure);
    }
}

TEST_F(CsvParserTest, DumpThatCannotBeWrittenLeavesNoOlderOne) {
    const std::string path = folder.write("old", "of another run");
    std::filesystem::create_symlink("/dev/full", folder.path("dataDumpAccelerometer.csv"));
    std::filesystem::create_symlink(path, folder.path("dataDumpAccelerometer_2.csv"));
    CsvParser().writeToFile(dumps + ".csv", {{sensor, {}}, {second, {}}});
    EXPECT_FALSE(std::filesystem::is_symlink(folder.path("dataDumpAccelerometer.csv")));
    EXPECT_TRUE(startsWith(fileContent(path), "LUID="));
}

TEST_F(CsvParserTest, TimestampsAreWholeNumbersOfThirtyTwoBits) {
    for (const auto& [field, expected] : tableOfTest()) {
        EXPECT_EQ(read(kHeader + field + ",0,0,0\n").at(0).timestamp, std::stod(expected)) << field;
    }
}

TEST_F(CsvParserTest, UnitsOfAnInertialHeaderAreConverted) {
    const std::string rows = replaceAll(kHeader, "time[ms]", "TIME[MS]") + "1,1000,2000,-500\n";
    EXPECT_EQ(read(replaceAll(rows, "g0", "lux")).at(0).values, Vector(3));
    const Vector thousandths = read(replaceAll(rows, "g0", "mg0")).at(0).values;
    EXPECT_NEAR(norm(thousandths - Vector{1.0, 2.0, -0.5}), 0.0, 1e-12);
    // The header of another sensor isn't looked at, whatever was read before.
    folder.write("dataDumpAmbientLightSensor.csv", "anything,goes[mg0]\n1,1000\n");
    const auto both = CsvParser().readFromFile(dumps, {sensor, light}, false);
    EXPECT_EQ(both.at(light).at(0).values, Vector{1000.0});
}

TEST_F(CsvParserTest, EveryDamageHasItsText) {
    for (const auto& [text, failure] : tableOfTest({{"HEAD", kHeader}, {"ACC", "Accelerometer"}})) {
        folder.write("dataDumpAccelerometer.csv", text);
        EXPECT_EQ(failureOf(sensor), failure) << text;
    }
}

TEST_F(CsvParserTest, SecondSensorHasItsOwnFileAndNames) {
    folder.write("dataDumpAccelerometer.csv", kHeader);
    EXPECT_EQ(failureOf(second), "Sensor data file FILE does not exist");
    const std::string path = folder.write("dataDumpAccelerometer_2.csv", kHeader);
    EXPECT_EQ(failureOf(second), "Invalid header");
    folder.write("dataDumpAccelerometer_2.csv", replaceAll(kHeader, "meter_", "meter_2_"));
    EXPECT_EQ(failureOf(second), kNoFailure);
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(failureOf(second), "Cannot read input file FILE");
}

}  // namespace tavocal::test
