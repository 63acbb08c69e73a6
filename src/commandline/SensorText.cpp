#include "commandline/SensorText.h"

#include <array>

#include "base/Failures.h"
#include "base/Text.h"
#include "commandline/CmdLine.h"

namespace tavocal {

namespace {

constexpr const char* kInvalidCalibrate =
    "Invalid value for calibrate command. Valid values are AGM(can be partial) and ALS";

bool isPlainRun(const SensorText& sensors) {
    const int letters = int{sensors.hasA} + int{sensors.hasG} + int{sensors.hasM};
    return sensors.isMotionWord || static_cast<std::size_t>(letters) == sensors.length;
}

bool isShortened(const CmdLine& cmdLine) {
    return cmdLine.hasOption("Minimal") || cmdLine.hasOption("FourSteps");
}

struct SensorRule {
    bool (*isBroken)(const SensorText& sensors, const CmdLine& cmdLine);
    const char* failure;
};

// In the order of judging.
constexpr std::array<SensorRule, 12> kSensorRules = {{
    {[](const SensorText& sensors, const CmdLine&) {
         return sensors.isMotion() && !isPlainRun(sensors);
     },
     kInvalidCalibrate},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.hasM && cmdLine.hasOption("Calibrate") && cmdLine.hasOption("FourSteps");
     },
     "Only A, G can be calibrated with this flow"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.hasM && cmdLine.hasOption("Calibrate") && cmdLine.hasOption("Minimal");
     },
     "Magnetometer is not applied to 1 step calibration"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.hasM && cmdLine.hasOption("TestCalibration") && isShortened(cmdLine);
     },
     "Only A, G can be tested with this flow"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return (sensors.hasA || sensors.hasG) && cmdLine.hasOption("TestCalibration") &&
                cmdLine.hasOption("MagAccuracyTest");
     },
     "Only M can be tested with this flow"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return !sensors.isMotion() && cmdLine.hasOption("TestCalibration");
     },
     "Invalid value for test command. Valid values are AGM(can be partial)"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return cmdLine.hasOption("NoGyroRotation") && (!sensors.hasG || isShortened(cmdLine));
     },
     "Only if you perform full calibration of gyroscope, you can use the NoGyroRotation command"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.isAls && isShortened(cmdLine);
     },
     "These options are only for motion sensors: Minimal, Foursteps"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.isAls && cmdLine.hasOption("CalibrateOffline") &&
                !cmdLine.hasOption("Auto");
     },
     "If ALS runs offline light levels file must be supplied"},
    {[](const SensorText& sensors, const CmdLine&) {
         return !sensors.isMotion() && !sensors.isAls;
     },
     kInvalidCalibrate},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.isMotion() && cmdLine.hasOption("Auto");
     },
     "Invalid automatic calibration argument, automatic calibration parameter is applicable only "
     "for Ambient Light sensor calibration"},
    {[](const SensorText& sensors, const CmdLine& cmdLine) {
         return sensors.isAls && cmdLine.hasOption("UseRawData") && !cmdLine.hasOption("Auto");
     },
     "Invalid calibration argument, automatic calibration parameter is required when loading a "
     "data dump"},
}};

}  // namespace

SensorText readSensorText(const std::string& text) {
    const std::string lower = lowerCase(text);
    SensorText sensors;
    sensors.isAls = text == "ALS" || text == "als";
    sensors.hasA = contains(lower, "a");
    sensors.hasG = contains(lower, "g");
    sensors.hasM = contains(lower, "m");
    sensors.isMotionWord = lower == "motion";
    sensors.length = text.size();
    return sensors;
}

void checkSensorText(const SensorText& sensors, const CmdLine& cmdLine) {
    for (const SensorRule& rule : kSensorRules) {
        if (rule.isBroken(sensors, cmdLine)) {
            throw CmdLineException(rule.failure);
        }
    }
}

}  // namespace tavocal
