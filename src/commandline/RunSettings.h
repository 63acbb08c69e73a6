#pragma once

#include <string>

#include "vocabulary/RunTypes.h"

namespace tavocal {

class CmdLine;

// What the command line asks of a run.
struct RunSettings {
    RunCommand runCommand = RunCommand::None;
    FlowType flowType = FlowType::Full;
    bool isCalibrating = false;  // -Calibrate or -CalibrateOffline
    bool isTesting = false;      // -TestCalibration or -MagTest
    bool isMagTest = false;
    bool isOffline = false;    // -CalibrateOffline
    bool usesDumps = false;    // -UseRawData
    bool exportsXml = false;   // -ExportXml
    bool importsXml = false;   // -ImportXml
    bool updatesTavo = false;  // -UpdateTavo

    // The letters of the sensor text.
    bool selectAccelerometer = false;
    bool selectGyroscope = false;
    bool selectMagnetometer = false;

    // With a backslash behind it; empty without -ExportAllFiles.
    std::string exportFolder;
    bool exportFolderSet = false;

    std::string dumpFolder;  // -UseRawData
    std::string dumpPrefix;

    // No firmware and no rights are needed.
    bool runsWithoutDevice() const { return isOffline || (isTesting && usesDumps); }
    // The firmware's present calibration is read.
    bool readsFirmware() const { return exportsXml || (isCalibrating && !isOffline); }
    bool writesFirmware() const { return updatesTavo || importsXml; }
    bool samples() const { return isCalibrating || isTesting; }
};

RunSettings runSettings(const CmdLine& cmdLine);

}  // namespace tavocal
