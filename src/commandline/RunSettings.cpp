#include "commandline/RunSettings.h"

#include "base/Text.h"
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
    settings.exportsXml = cmdLine.hasOption("ExportXml");
    settings.importsXml = cmdLine.hasOption("ImportXml");
    settings.updatesTavo = cmdLine.hasOption("UpdateTavo");
    settings.flowType = flowTypeOf(cmdLine);
    settings.exportFolderSet = cmdLine.hasOption("ExportAllFiles");
    if (settings.exportFolderSet) {
        settings.exportFolder = cmdLine.value("ExportAllFiles") + "\\";
    }
    takeCommand(settings, cmdLine);
    takeDumps(settings, cmdLine);
    return settings;
}

}  // namespace tavocal
