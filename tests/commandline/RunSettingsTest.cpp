#include "commandline/RunSettings.h"

#include "commandline/CmdLineFixture.h"

namespace tavocal::test {

using RunSettingsTest = CmdLineFixture;

std::string numberText(const std::optional<int>& number) {
    return number ? std::to_string(*number) : "";
}

std::string describe(const RunSettings& settings) {
    std::string text = std::to_string(static_cast<int>(settings.runCommand)) + "/" +
                       std::to_string(static_cast<int>(settings.flowType));
    std::istringstream words(
        "calibrating testing magTest offline dumps exports imports updates A G M secondaryOnly "
        "primaryOnly unrotated originalAxis folder result | alone reads writes samples");
    std::string word;
    for (const bool isSet : {settings.isCalibrating,       settings.isTesting,
                             settings.isMagTest,           settings.isOffline,
                             settings.usesDumps,           settings.exportsXml,
                             settings.importsXml,          settings.updatesTavo,
                             settings.selectAccelerometer, settings.selectGyroscope,
                             settings.selectMagnetometer,  !settings.selectPrimary,
                             !settings.selectSecondary,    settings.noGyroRotation,
                             settings.checkVsOriginalAxis, settings.exportFolderSet,
                             settings.exportsResult,       true,
                             settings.runsWithoutDevice(), settings.readsFirmware(),
                             settings.writesFirmware(),    settings.samples()}) {
        words >> word;
        text += isSet ? " " + word : "";
    }
    text += " | " + settings.exportFolder + ", " + settings.dumpFolder + ", " +
            settings.dumpPrefix + ".";
    const std::pair<const char*, std::string> values[] = {
        {" to ", settings.exportFile},
        {" from ", settings.importFile},
        {" levels ", settings.lightLevelsFile},
        {" every ", numberText(settings.samplingInterval)},
        {" after ", numberText(settings.waitingTime)}};
    for (const auto& [name, value] : values) {
        text += value.empty() ? "" : name + value;
    }
    return text;
}

TEST_F(RunSettingsTest, CommandsAndOptionsMakeARun) {
    for (const auto& [line, settings] : rowsOf("commandline/run-settings.txt")) {
        EXPECT_EQ(failureOf(line), kNoFailure) << line;
        EXPECT_EQ(describe(runSettings(cmdLine)), settings) << line;
    }
}

}  // namespace tavocal::test
