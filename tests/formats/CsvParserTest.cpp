#include "formats/CsvParser.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Failures.h"
#include "formats/DumpPaths.h"
#include "sensors/Sensor.h"
#include "support/TempFolder.h"

namespace tavocal::test {

namespace {

constexpr LUID kAccelerometer = {0x0073, 1, 0, 0, kStaticFlag};

class CsvParserTest : public ::testing::Test {
  protected:
    std::vector<Sample> read(const std::string& text, bool readLuid = false) {
        folder.write("dataDumpAccelerometer.csv", text);
        return CsvParser().readFromFile(folder.path() + "\\dataDump", {sensor}, readLuid)[sensor];
    }

    std::string failure(const std::string& text) {
        try {
            read(text, true);
        } catch (const std::exception& exception) {
            std::string message = exception.what();
            const std::size_t at = message.find(folder.path());
            return at == std::string::npos ? message : message.substr(0, at) + "FILE";
        }
        return "none";
    }

    TempFolder folder;
    std::shared_ptr<Sensor> sensor = makeSensor(kAccelerometer);
};

const std::string kHeader =
    "time[ms],Accelerometer_X[g0],Accelerometer_Y[g0],Accelerometer_Z[g0]\n";

}  // namespace

TEST_F(CsvParserTest, WritesTheFormatToTheLetter) {
    sensor->formFactor = 3;
    const SensorDataMap samples = {
        {sensor, {{1000.0, {0.012, -0.004, 0.998}}, {1020.0, {}}, {1e7, {-0.0, 1e9, NAN}}}}};
    CsvParser().writeToFile(folder.path() + "\\dataDump.csv", samples);
    EXPECT_EQ(fileContent(folder.path("dataDumpAccelerometer.csv")),
              "LUID=0073000100000002\nFORMFACTOR=TABLET\nHINGE=BOTTOM\n" + kHeader +
                  "1000.000000,0.012000,-0.004000,0.998000\n1020.000000\n"
                  "10000000.000000,-0.000000,1000000000.000000,nan\n");
}

TEST_F(CsvParserTest, WhatIsWrittenComesBackInWholeMilliseconds) {
    const SensorDataMap samples = {{sensor, {{0.4, {1, 2, 3}}, {10.9, {-1.5, 0, 1e-6}}}}};
    CsvParser().writeToFile(folder.path() + "\\dataDump.csv", samples);
    sensor->luid = {};
    sensor->luid.SensorTypeId = 0x0073;
    const auto back = CsvParser().readFromFile(folder.path() + "\\dataDump", {sensor}, true);
    EXPECT_EQ(sensor->getLuid(), kAccelerometer);
    ASSERT_EQ(back.at(sensor).size(), 2U);
    EXPECT_EQ(back.at(sensor)[0].timestamp, 0.0);
    EXPECT_EQ(back.at(sensor)[1].timestamp, 10.0);
    EXPECT_EQ(back.at(sensor)[1].values, (Vector{-1.5, 0.0, 1e-6}));
}

TEST_F(CsvParserTest, TakesWhatIsWiderThanWhatItWrites) {
    const std::string text = "#c\n#c\nLUID=0073000100000002\n\n#c\n\nFORMFACTOR=MID\nHINGE=TOP\n" +
                             kHeader + "#c\n\n1,1,2,3\n1, 2,+3,0x10\n5\n010,1e1,2,3";
    std::string windows;
    for (const char c : text) {
        windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    for (const std::string& spelling : {text, windows}) {
        const std::vector<Sample> samples = read(spelling);
        ASSERT_EQ(samples.size(), 4U);
        EXPECT_EQ(samples[1].values, (Vector{2.0, 3.0, 16.0}));
        EXPECT_TRUE(samples[2].values.empty());
        EXPECT_EQ(samples[3].timestamp, 8.0);
        EXPECT_EQ(sensor->formFactor, 5);
        EXPECT_EQ(sensor->hinge, 1);
    }
    EXPECT_TRUE(read(kHeader).empty());
}

TEST_F(CsvParserTest, TimestampsAreWholeNumbersOfThirtyTwoBits) {
    const std::vector<std::pair<std::string, double>> cases = {
        {"1000.75", 1000.0},
        {"1999.999999", 1999.0},
        {"0x500", 1280.0},
        {"010", 8.0},
        {"0", 0.0},
        {"0.9", 0.0},
        {"1e3", 1.0},
        {"nan", 0.0},
        {" 7", 7.0},
        {"+7", 7.0},
        {"4294967296.5", 4294967295.0},
        {"99999999999999999999999", 4294967295.0}};
    for (const auto& [field, expected] : cases) {
        EXPECT_EQ(read(kHeader + field + ",0,0,0\n").at(0).timestamp, expected) << field;
    }
}

TEST_F(CsvParserTest, UnitsOfTheHeaderAreConverted) {
    const auto inUnit = [&](const std::string& unit) {
        std::string header = kHeader;
        for (std::size_t at = 0; (at = header.find("g0", at)) != std::string::npos;) {
            header.replace(at, 2, unit);
            at += unit.size();
        }
        return read(header + "1,1000,2000,-500\n").at(0).values;
    };
    EXPECT_NEAR(norm(inUnit("mg0") - Vector{1.0, 2.0, -0.5}), 0.0, 1e-12);
    EXPECT_EQ(inUnit("lux"), Vector(3));
}

TEST_F(CsvParserTest, EveryDamageHasItsText) {
    const std::string rows = kHeader + "10,0,0,0\n";
    struct Case {
        std::string text;
        std::string message;
    };
    const std::vector<Case> cases = {
        {"", "Input file FILE"},
        {"#only\n", "Missing column header at input file FILE"},
        {"LUID=0073000100000002\n", "Missing column header at input file FILE"},
        {"FORMFACTOR=MID\nHINGE=TOP\n", "Missing column header at input file FILE"},
        {"LUID=00730001\n" + kHeader, "Invalid LUID at input file FILE"},
        {"LUID=007300010000000g\n" + kHeader, "Invalid LUID at input file FILE"},
        {"LUID=00730001000000021\n" + kHeader, "Invalid LUID at input file FILE"},
        {"a,b,c\n", "Unexpected number of columns at input file FILE"},
        {"HINGE=TOP\nFORMFACTOR=MID\n" + kHeader,
         "Unexpected number of columns at input file FILE"},
        {"time,a,b,c\n", "Invalid header timestamp"},
        {"TIME[MS],Accelerometer_X[g0],Accelerometer_X[g0],Accelerometer_Z[g0]\n",
         "Invalid header"},
        {"time[ms],Accelerometer_X,Accelerometer_Y[g0],Accelerometer_Z[g0]\n",
         "Invalid header format"},
        {"time[ms],Accelerometer_X]g0[,Accelerometer_Y[g0],Accelerometer_Z[g0]\n",
         "Invalid header format"},
        {"time[ms],Accelerometer_X[],Accelerometer_Y[],Accelerometer_Z[]\n",
         "Invalid header format, unit is not specified"},
        {"time[ms],Accelerometer_X[g0],Accelerometer_Y[mg0],Accelerometer_Z[g0]\n",
         "Invalid header format. All columns should have the same unit"},
        {"time[ms],Accelerometer_X[G],Accelerometer_Y[G],Accelerometer_Z[G]\n",
         "Math Error: Unsupported unit"},
        {rows + "11,0,0\n", "Unexpected number of values at input file FILE"},
        {rows + "11,0,0,0,0\n", "Unexpected number of values at input file FILE"},
        {rows + "9,0,0,0\n", "Invalid order of data at input file FILE"},
        {rows + "x,0,0,0\n", "CSV parsing error. Invalid timestamp value x"},
        {rows + ",0,0,0\n", "CSV parsing error. Invalid timestamp value "},
        {rows + "-1,0,0,0\n", "CSV parsing error. Negative timestamp is invalid. -1"},
        {rows + "11,0,1.5g,0\n", "CSV parsing error. Invalid value 1.5g"},
        {rows + "11,0,,0\n", "CSV parsing error. Invalid value "},
        {rows + std::string("11,0,1\0,0\n", 10), std::string("CSV parsing error. Invalid value 1")},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(failure(c.text), c.message) << c.text;
    }
    sensor->luid.InstanceId = 1;
    EXPECT_THROW(CsvParser().readFromFile(folder.path() + "\\dataDump", {sensor}, false),
                 CalibrationException);
}

TEST(DumpPathsTest, NameGoesBeforeTheExtension) {
    EXPECT_EQ(dumpFileName("results\\dataDump.csv", "Gyroscope_2"),
              "results\\dataDumpGyroscope_2.csv");
    EXPECT_EQ(dumpFileName("d\\dataDump", "Gyroscope"), "d\\dataDumpGyroscope");
    EXPECT_EQ(dumpFileName("a.CSV", "G"), "a.CSVG");
    EXPECT_EQ(dumpFileName("a.csvx", "G"), "aG.csvx");
    EXPECT_TRUE(hasCsvExtension("a.CsV"));
    EXPECT_FALSE(hasCsvExtension("a.csvx"));
    EXPECT_EQ(replayFileName(dumpTemplate("d.csv", ""), "G"), "dG.csv");
    EXPECT_EQ(replayFileName(dumpTemplate("d", "p"), "G"), "d\\pG.csv");
}

}  // namespace tavocal::test
