#include "formats/AlsConfig.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Failures.h"
#include "support/TempFolder.h"

namespace tavocal::test {
namespace {

class AlsConfigTest : public testing::Test {
  protected:
    std::string path() const { return folder.path("als.txt"); }

    // The levels and the delay as text, or the failure.
    std::string loaded(const std::string& content) {
        folder.write("als.txt", content);
        try {
            AlsAutoConfig config;
            loadAlsConfig(path(), config);
            std::string text;
            for (const int value : config.values) {
                text += std::to_string(value) + " ";
            }
            return text + "/ " + std::to_string(config.delayTime);
        } catch (const CalibrationException& exception) {
            return exception.what();
        }
    }

    TempFolder folder;

    const std::string lowest = "Invalid light value in configuration file ";
    const std::string order =
        "Invalid values in configuration file. Values should be in ascending or descending order";
    const std::string delta =
        "Invalid delta between values in configuration file. Minimum delta should be 300";
    const std::string unknownKey =
        "Invalid value in the configuration file. The format should be \"values=list of comma "
        "separated values\" or \"delay_time=value\"";
};

TEST_F(AlsConfigTest, ReadsLevelsAndDelay) {
    const std::string expected = "500 1000 2000 / 7";
    EXPECT_EQ(loaded("values=500, 1000, 2000\ndelay_time=7\n"), expected);
    EXPECT_EQ(loaded("values=500, 1000, 2000\r\ndelay_time=7\r\n"), expected);
    EXPECT_EQ(loaded("\t delay_time \t= 7\t\n\v values\f=  500 ,1000\t,2000 , "),
              lowest + "0. value should be bigger than 1")
        << "a blank field is 0";
    EXPECT_EQ(loaded("\t delay_time \t= 7\t\n\v values\f=  500 ,1000\t,2000 "), expected);
    EXPECT_EQ(loaded("values=500,1000,2000,\ndelay_time=7"), expected) << "no field at the end";
}

TEST_F(AlsConfigTest, KeepsTheDelayWithoutALine) {
    EXPECT_EQ(loaded("values=500"), "500 / 5");
    AlsAutoConfig config;
    config.delayTime = 9;
    config.values = {1};
    folder.write("als.txt", "values=2000,1000\n");
    loadAlsConfig(path(), config);
    EXPECT_EQ(config.delayTime, 9);
    EXPECT_EQ(config.values, (std::vector<int>{2000, 1000}));
}

TEST_F(AlsConfigTest, TheLastLineOfAKeyWins) {
    EXPECT_EQ(loaded("values=500\ndelay_time=6\nvalues=800,400\ndelay_time=8\n"), "800 400 / 8");
}

TEST_F(AlsConfigTest, PassesOverWhatIsNoPair) {
    EXPECT_EQ(loaded("# levels\n\n   \n=\nvalues\nvalues=1=2\ndelay_time=\r\nvalues=500\n"),
              "500 / 5");
    EXPECT_EQ(loaded("# a=b\nvalues=500\n"), unknownKey);
    EXPECT_EQ(loaded("VALUES=1000"), unknownKey);
    EXPECT_EQ(loaded("=1000"), unknownKey);
    EXPECT_EQ(loaded("levels=1000\nvalues=1,2\n"), unknownKey) << "the first bad line decides";
}

TEST_F(AlsConfigTest, ChecksTheSeries) {
    EXPECT_EQ(loaded("values=1"), "1 / 5");
    EXPECT_EQ(loaded("values=0"), lowest + "0. value should be bigger than 1");
    EXPECT_EQ(loaded("values=500,-7,900"), lowest + "-7. value should be bigger than 1");
    EXPECT_EQ(loaded("values=1000,1300"), "1000 1300 / 5");
    EXPECT_EQ(loaded("values=1300,1000"), "1300 1000 / 5");
    EXPECT_EQ(loaded("values=1000,1299"), delta);
    EXPECT_EQ(loaded("values=1299,1000"), delta);
    EXPECT_EQ(loaded("values=1000,1000"), delta);
    EXPECT_EQ(loaded("values=1000,2000,2299"), delta);
    EXPECT_EQ(loaded("values=1000,2000,1500"), order);
    EXPECT_EQ(loaded("values=500,800,600"), order);
    EXPECT_EQ(loaded("values=500,800,300"), order);
    EXPECT_EQ(loaded("values=500,600,300"), order) << "the order is looked at before any delta";
    EXPECT_EQ(loaded("values=2000,1000,1500"), order);
    EXPECT_EQ(loaded("values=1000,1000,2000"), order);
    EXPECT_EQ(loaded("values=2000,1000,1000"), delta);
    EXPECT_EQ(loaded("values=1,2147483647"), "1 2147483647 / 5");
    EXPECT_EQ(loaded("values=2147483647,1"), "2147483647 1 / 5");
}

TEST_F(AlsConfigTest, RefusesWhatIsNoNumber) {
    const std::string text = "Conversion error. Value ";
    const std::string end = " is not a valid number";
    for (const std::string field : {"abc", "1 000", "1000.5", "0x10", "2147483648", "-2147483649",
                                    "99999999999999999999999"}) {
        EXPECT_EQ(loaded("values= " + field + " ,1000"), text + field + end);
        EXPECT_EQ(loaded("values=1000\ndelay_time= " + field + " "), text + field + end);
    }
    EXPECT_EQ(loaded("values=0,x"), text + "x" + end) << "all numbers are read first";
}

TEST_F(AlsConfigTest, ChecksTheDelay) {
    const std::string values = "values=500\n";
    EXPECT_EQ(loaded(values + "delay_time=3"), "500 / 3");
    EXPECT_EQ(loaded(values + "delay_time=50"), "500 / 50");
    for (const std::string delay : {"2", "0", "-5", " "}) {
        EXPECT_EQ(loaded(values + "delay_time=" + delay),
                  "Invalid delay time. Minimum delay time is 3 seconds.")
            << delay;
    }
    EXPECT_EQ(loaded(values + "delay_time=51"),
              "Invalid delay time. Maximum delay time is 50 seconds.");
}

TEST_F(AlsConfigTest, NeedsAFileWithLevels) {
    for (const std::string content : {"", "delay_time=5\n", "values=\n", "values==\n"}) {
        EXPECT_EQ(loaded(content), "Invalid configuration file " + path()) << content;
    }
    AlsAutoConfig config;
    const std::string missing = folder.path("missing.txt");
    try {
        loadAlsConfig(missing, config);
        FAIL();
    } catch (const CalibrationException& exception) {
        EXPECT_EQ(exception.what(), "Cannot read input file " + missing);
    }
}

}  // namespace
}  // namespace tavocal::test
