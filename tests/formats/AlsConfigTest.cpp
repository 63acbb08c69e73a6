#include "formats/AlsConfig.h"

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {
namespace {

class AlsConfigTest : public testing::Test {
  protected:
    // The levels and the delay as text, or the failure.
    std::string loaded(const std::string& content) {
        AlsAutoConfig config;
        const std::string failure = messageOf<CalibrationException>(
            [&] { loadAlsConfig(folder.write("als.txt", content), config); });
        std::string text;
        for (const int value : config.values) {
            text += std::to_string(value) + " ";
        }
        return failure == kNoFailure ? text + "/ " + std::to_string(config.delayTime) : failure;
    }
    void expectOutcomes(const std::string& rows) {
        for (const auto& [content, outcome] : textTable(rows, kControls)) {
            EXPECT_EQ(loaded(content), replaceAll(outcome, "FILE", folder.path("als.txt")))
                << content;
        }
    }

    const TempFolder folder;
};

TEST_F(AlsConfigTest, Lines) {
    expectOutcomes(R"(
values=500, 1000, 2000\ndelay_time=7\n => 500 1000 2000 / 7
values=500, 1000, 2000\r\ndelay_time=7\r\n => 500 1000 2000 / 7
\t delay_time \t= 7\t\n\v values\r=  500 ,1000\t,2000  => 500 1000 2000 / 7
values=500,1000,2000,\ndelay_time=7 => 500 1000 2000 / 7
values=500 => 500 / 5
values=500\ndelay_time=6\nvalues=800,400\ndelay_time=8\n => 800 400 / 8
# levels\n\n   \n=\nvalues\nvalues=1=2\ndelay_time=\r\nvalues=500\n => 500 / 5
# a=b\nvalues=500 => Invalid value in the configuration file. The format should be "values=list of comma separated values" or "delay_time=value"
VALUES=1000 => Invalid value in the configuration file. The format should be "values=list of comma separated values" or "delay_time=value"
=1000 => Invalid value in the configuration file. The format should be "values=list of comma separated values" or "delay_time=value"
levels=1000\nvalues=1,2 => Invalid value in the configuration file. The format should be "values=list of comma separated values" or "delay_time=value"
| => Invalid configuration file FILE
delay_time=5\n => Invalid configuration file FILE
values=\n => Invalid configuration file FILE
)");
}

// The numbers are looked at before the order, the order before the deltas.
TEST_F(AlsConfigTest, Limits) {
    expectOutcomes(R"(
values=1 => 1 / 5
values=0 => Invalid light value in configuration file 0. value should be bigger than 1
values=500,-7,900 => Invalid light value in configuration file -7. value should be bigger than 1
values=500,1000, | => Invalid light value in configuration file 0. value should be bigger than 1
values=0,x => Conversion error. Value x is not a valid number
values=1000,1300 => 1000 1300 / 5
values=1300,1000 => 1300 1000 / 5
values=1000,1299 => Invalid delta between values in configuration file. Minimum delta should be 300
values=1299,1000 => Invalid delta between values in configuration file. Minimum delta should be 300
values=1000,2000,2299 => Invalid delta between values in configuration file. Minimum delta should be 300
values=2000,1000,1000 => Invalid delta between values in configuration file. Minimum delta should be 300
values=1000,2000,1500 => Invalid values in configuration file. Values should be in ascending or descending order
values=2000,1000,1500 => Invalid values in configuration file. Values should be in ascending or descending order
values=1000,1000,2000 => Invalid values in configuration file. Values should be in ascending or descending order
values=500,600,300 => Invalid values in configuration file. Values should be in ascending or descending order
values=2147483647,1 => 2147483647 1 / 5
values=500\ndelay_time=3 => 500 / 3
values=500\ndelay_time=50 => 500 / 50
values=500\ndelay_time=2 => Invalid delay time. Minimum delay time is 3 seconds.
values=500\ndelay_time= | => Invalid delay time. Minimum delay time is 3 seconds.
values=500\ndelay_time=51 => Invalid delay time. Maximum delay time is 50 seconds.
values=500\ndelay_time=4.5 => Conversion error. Value 4.5 is not a valid number
)");
    EXPECT_TRUE(levelsTooClose(300, 1));
    EXPECT_FALSE(levelsTooClose(-2147483647, 2147483647));
}

TEST_F(AlsConfigTest, MissingFileAndWhatTheFileDoesNotTell) {
    const std::string missing = folder.path("missing.txt");
    AlsAutoConfig config{9, {1}};
    EXPECT_EQ(messageOf<CalibrationException>([&] { loadAlsConfig(missing, config); }),
              "Cannot read input file " + missing);
    loadAlsConfig(folder.write("als.txt", "values=2000,1000\n"), config);
    EXPECT_EQ(config.delayTime, 9);
    EXPECT_EQ(config.values, (std::vector<int>{2000, 1000}));
}

}  // namespace
}  // namespace tavocal::test
