#include "app/RunSettings.h"

#include "app/CmdLineFixture.h"

namespace tavocal::test {

using RunSettingsTest = CmdLineFixture;

std::string describe(const RunSettings& settings) {
    std::string text = std::to_string(static_cast<int>(settings.runCommand)) + "/" +
                       std::to_string(static_cast<int>(settings.flowType));
    const std::pair<const char*, bool> kWords[] = {{" calibrating", settings.isCalibrating},
                                                   {" testing", settings.isTesting},
                                                   {" magTest", settings.isMagTest},
                                                   {" offline", settings.isOffline},
                                                   {" dumps", settings.usesDumps},
                                                   {" exports", settings.exportsXml},
                                                   {" imports", settings.importsXml},
                                                   {" updates", settings.updatesTavo},
                                                   {" A", settings.selectAccelerometer},
                                                   {" G", settings.selectGyroscope},
                                                   {" M", settings.selectMagnetometer},
                                                   {" folder", settings.exportFolderSet},
                                                   {" |", true},
                                                   {" alone", settings.runsWithoutDevice()},
                                                   {" reads", settings.readsFirmware()},
                                                   {" writes", settings.writesFirmware()},
                                                   {" samples", settings.samples()}};
    for (const auto& [word, isSet] : kWords) {
        text += isSet ? word : "";
    }
    return text + " | " + settings.exportFolder + ", " + settings.dumpFolder + ", " +
           settings.dumpPrefix + ".";
}

TEST_F(RunSettingsTest, CommandsAndOptionsMakeARun) {
    for (const auto& [line, settings] : rowsOf("app/run-settings.txt")) {
        EXPECT_EQ(failureOf(line), kNoFailure) << line;
        EXPECT_EQ(describe(runSettings(cmdLine)), settings) << line;
    }
}

}  // namespace tavocal::test
