#include "commandline/RunSettings.h"

#include "base/Text.h"
#include "base/TextToNumber.h"
#include "commandline/CmdLine.h"
#include "formats/DumpPaths.h"

namespace tavocal {

namespace {

constexpr const char* kMotionWord = "motion";
constexpr const char* kAlsWord = "als";

FlowType flowTypeOf(const CmdLine& cmdLine) {
    if (cmdLine.hasOption("Minimal")) {
        return FlowType::Minimal;
    }
    if (cmdLine.hasOption("FourSteps")) {
        return FlowType::FourSteps;
    }
    return cmdLine.hasOption("MagAccuracyTest") ? FlowType::MagAccuracyTest : FlowType::Full;
}

void takeSensorText(RunSettings& settings, const std::string& value) {
    const std::string text = lowerCase(value);
    if (text == kAlsWord) {
        settings.runCommand = RunCommand::CalibrateAls;
    }
    const bool motion = text == kMotionWord;
    settings.selectAccelerometer = motion || contains(text, "a");
    settings.selectGyroscope = motion || contains(text, "g");
    settings.selectMagnetometer = motion || contains(text, "m");
}

void takeCommand(RunSettings& settings, const CmdLine& cmdLine) {
    if (cmdLine.hasOption("Calibrate")) {
        settings.runCommand = RunCommand::Calibrate;
        takeSensorText(settings, cmdLine.value("Calibrate"));
    } else if (cmdLine.hasOption("CalibrateOffline")) {
        settings.runCommand = RunCommand::Calibrate;
        takeSensorText(settings, cmdLine.value("CalibrateOffline"));
    } else if (cmdLine.hasOption("TestCalibration")) {
        settings.runCommand = RunCommand::TestCalibration;
        takeSensorText(settings, cmdLine.value("TestCalibration"));
    } else if (cmdLine.hasOption("MagTest")) {
        settings.runCommand = RunCommand::MagEnvironmentTest;
    }
}

void takeSelection(RunSettings& settings, const CmdLine& cmdLine) {
    settings.selectPrimary = !cmdLine.hasOption("SecondaryOnly");
    settings.selectSecondary = !cmdLine.hasOption("PrimaryOnly");
    settings.noGyroRotation = cmdLine.hasOption("NoGyroRotation");
    settings.checkVsOriginalAxis = cmdLine.hasOption("CheckVsOriginalAxis");
}

std::optional<int> numberOf(const CmdLine& cmdLine, const char* option) {
    return cmdLine.hasOption(option) ? std::optional(parseInt(cmdLine.value(option)))
                                     : std::nullopt;
}

void takeFiles(RunSettings& settings, const CmdLine& cmdLine) {
    settings.exportsXml = cmdLine.hasOption("ExportXml");
    settings.exportFile = cmdLine.value("ExportXml");
    settings.importsXml = cmdLine.hasOption("ImportXml");
    settings.importFile = cmdLine.value("ImportXml");
    settings.lightLevelsFile = cmdLine.value("Auto");
    settings.exportsResult = cmdLine.hasOption("ExportResult");
    settings.exportFolderSet = cmdLine.hasOption("ExportAllFiles");
    if (settings.exportFolderSet) {
        settings.exportFolder = cmdLine.value("ExportAllFiles") + "\\";
    }
}

void takeDumps(RunSettings& settings, const CmdLine& cmdLine) {
    settings.usesDumps = cmdLine.hasOption("UseRawData");
    settings.dumpFolder = cmdLine.value("UseRawData");
    settings.dumpPrefix =
        cmdLine.hasOption("DumpPrefix") ? cmdLine.value("DumpPrefix") : "dataDump";
    // The folder is a whole path template then.
    if (hasCsvExtension(settings.dumpFolder)) {
        settings.dumpPrefix.clear();
    }
}

}  // namespace

RunSettings runSettings(const CmdLine& cmdLine) {
    RunSettings settings;
    settings.isOffline = cmdLine.hasOption("CalibrateOffline");
    settings.isCalibrating = settings.isOffline || cmdLine.hasOption("Calibrate");
    settings.isMagTest = cmdLine.hasOption("MagTest");
    settings.isTesting = settings.isMagTest || cmdLine.hasOption("TestCalibration");
    settings.updatesTavo = cmdLine.hasOption("UpdateTavo");
    settings.flowType = flowTypeOf(cmdLine);
    settings.samplingInterval = numberOf(cmdLine, "SamplingInterval");
    settings.waitingTime = numberOf(cmdLine, "NoEnter");
    takeCommand(settings, cmdLine);
    takeSelection(settings, cmdLine);
    takeFiles(settings, cmdLine);
    takeDumps(settings, cmdLine);
    return settings;
}

}  // namespace tavocal
