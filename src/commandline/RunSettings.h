#pragma once

#include <optional>
#include <string>

#include "vocabulary/RunTypes.h"

namespace tavocal {

class CmdLine;

// All that the command line asks of a run; nobody asks the command line itself behind this.
struct RunSettings {
    RunCommand runCommand = RunCommand::None;
    FlowType flowType = FlowType::Full;
    bool isCalibrating = false;  // -Calibrate or -CalibrateOffline
    bool isTesting = false;      // -TestCalibration or -MagTest
    bool isMagTest = false;
    bool isOffline = false;   // -CalibrateOffline
    bool usesDumps = false;   // -UseRawData
    bool exportsXml = false;  // -ExportXml
    std::string exportFile;
    bool importsXml = false;  // -ImportXml
    std::string importFile;
    bool updatesTavo = false;  // -UpdateTavo

    // The letters of the sensor text.
    bool selectAccelerometer = false;
    bool selectGyroscope = false;
    bool selectMagnetometer = false;
    bool selectPrimary = true;    // without -SecondaryOnly
    bool selectSecondary = true;  // without -PrimaryOnly

    bool noGyroRotation = false;       // -NoGyroRotation
    bool checkVsOriginalAxis = false;  // -CheckVsOriginalAxis

    std::string lightLevelsFile;          // -Auto; empty if the operator types the levels
    std::optional<int> samplingInterval;  // -SamplingInterval, in milliseconds
    std::optional<int> waitingTime;       // -NoEnter, in milliseconds

    // With a backslash behind it; empty without -ExportAllFiles.
    std::string exportFolder;
    bool exportFolderSet = false;
    bool exportsResult = false;  // -ExportResult

    std::string dumpFolder;  // -UseRawData
    std::string dumpPrefix;

    // No firmware and no rights are needed.
    bool runsWithoutDevice() const { return isOffline || (isTesting && usesDumps); }
    // The firmware's present calibration is read.
    bool readsFirmware() const { return exportsXml || (isCalibrating && !isOffline); }
    bool writesFirmware() const { return updatesTavo || importsXml; }
    bool samples() const { return isCalibrating || isTesting; }
    // Accelerometers, gyroscopes and magnetometers are calibrated or tested.
    bool isMotionRun() const {
        return runCommand == RunCommand::Calibrate || runCommand == RunCommand::TestCalibration;
    }
};

RunSettings runSettings(const CmdLine& cmdLine);

}  // namespace tavocal
