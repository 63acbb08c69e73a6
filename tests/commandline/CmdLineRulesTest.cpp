#include "commandline/CmdLineRules.h"

#include "base/Text.h"
#include "commandline/CmdLineFixture.h"

namespace tavocal::test {

using CmdLineRulesTest = CmdLineFixture;

TEST_F(CmdLineRulesTest, EachOptionHasItsFamiliesOfCommands) {
    const std::vector<std::string> commands = {"-ImportXml cal.xml",  "-ExportXml a.xml",
                                               "-CalibrateOffline A", "-Calibrate A",
                                               "-TestCalibration A",  "-MagTest"};
    const auto name = [](const std::string& s) { return s.substr(1, s.find(' ') - 1); };
    for (const auto& [option, family] : rowsOf("commandline/command-families.txt")) {
        for (const std::string& command : commands) {
            const bool isItself = name(option) == name(command);
            const std::string line = command + (isItself ? "" : " " + option);
            const std::string refusal = "Invalid combination of commands. The " + name(command) +
                                        " argument cannot be used together with " + name(option);
            EXPECT_EQ(failureOf(line) != refusal,
                      contains(" " + family + " ", " " + name(command) + " "))
                << line;
        }
    }
}

TEST_F(CmdLineRulesTest, TheFirstBrokenRuleIsTold) {
    for (const auto& [line, failure] : rowsOf("commandline/command-lines.txt")) {
        EXPECT_EQ(failureOf(line), failure) << line;
    }
}

}  // namespace tavocal::test
