#include "commandline/RunSettings.h"

#include "commandline/CmdLineFixture.h"

namespace tavocal::test {

using RunSettingsTest = CmdLineFixture;

std::string describe(const RunSettings& settings) {
    std::string text = std::to_string(static_cast<int>(settings.runCommand)) + "/" +
                       std::to_string(static_cast<int>(settings.flowType));
    std::istringstream words(
        "calibrating testing magTest offline dumps exports imports updates A G M folder | alone "
        "reads writes samples");
    std::string word;
    for (const bool isSet :
         {settings.isCalibrating, settings.isTesting, settings.isMagTest, settings.isOffline,
          settings.usesDumps, settings.exportsXml, settings.importsXml, settings.updatesTavo,
          settings.selectAccelerometer, settings.selectGyroscope, settings.selectMagnetometer,
          settings.exportFolderSet, true, settings.runsWithoutDevice(), settings.readsFirmware(),
          settings.writesFirmware(), settings.samples()}) {
        words >> word;
        text += isSet ? " " + word : "";
    }
    return text + " | " + settings.exportFolder + ", " + settings.dumpFolder + ", " +
           settings.dumpPrefix + ".";
}

TEST_F(RunSettingsTest, CommandsAndOptionsMakeARun) {
    for (const auto& [line, settings] : rowsOf("commandline/run-settings.txt")) {
        EXPECT_EQ(failureOf(line), kNoFailure) << line;
        EXPECT_EQ(describe(runSettings(cmdLine)), settings) << line;
    }
}

}  // namespace tavocal::test
