#include "app/SensorSelection.h"

#include <string>

#include "base/Failures.h"
#include "base/Text.h"
#include "commandline/RunSettings.h"
#include "formats/DumpPaths.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal {

namespace {

struct DumpClass {
    const char* name;
    std::uint16_t type;
};

constexpr DumpClass kAccelerometerDump = {kAccelerometerName, kAccelerometerType};
constexpr DumpClass kGyroscopeDump = {kGyroscopeName, kGyroscopeType};
constexpr DumpClass kMagnetometerDump = {kMagnetometerName, kMagnetometerType};
constexpr DumpClass kAmbientLightDump = {kAmbientLightName, kAmbientLightType};

bool isOfClass(const Sensor& sensor, const char* className) {
    return contains(sensor.getDisplayName(), className);
}

bool isSecondary(const Sensor& sensor) {
    return contains(sensor.getDisplayName(), "_2");
}

std::vector<DumpClass> dumpClasses(const RunSettings& settings) {
    std::vector<DumpClass> classes;
    switch (settings.runCommand) {
        case RunCommand::Calibrate:
        case RunCommand::TestCalibration:
            if (settings.selectAccelerometer) {
                classes.push_back(kAccelerometerDump);
            }
            if (settings.selectGyroscope) {
                classes.push_back(kGyroscopeDump);
            }
            if (settings.selectMagnetometer) {
                classes.push_back(kMagnetometerDump);
            }
            break;
        case RunCommand::CalibrateAls:
            classes.push_back(kAmbientLightDump);
            break;
        default:
            classes.push_back(kMagnetometerDump);
            break;
    }
    return classes;
}

}  // namespace

SensorSelection::SensorSelection(const RunSettings& runSettings) : settings(runSettings) {}

SensorSelection::Sensors SensorSelection::initSensorsFromDumps() const {
    Sensors sensors;
    const auto addIfDumped = [&](const DumpClass& dump, const std::string& suffix,
                                 std::uint8_t instance) {
        if (dumpFileExists(settings.dumpFolder, settings.dumpPrefix, dump.name + suffix)) {
            sensors.push_back(makeSensor({dump.type, 0, 0, instance, kStaticFlag}));
        }
    };
    for (const DumpClass& dump : dumpClasses(settings)) {
        addIfDumped(dump, "", 0);
        addIfDumped(dump, "_2", 1);
    }
    return sensors;
}

SensorSelection::Sensors SensorSelection::initCalibratingSensors(
    const Sensors& physicalSensors, const SecondInstanceCheck& checkSecondInstance) const {
    Sensors calibratingSensors;
    for (const auto& sensor : physicalSensors) {
        if (!isEligible(*sensor)) {
            continue;
        }
        if (needsSecondInstance(*sensor)) {
            checkSecondInstance();
        }
        if (isSelected(*sensor)) {
            passOptions(*sensor);
            calibratingSensors.push_back(sensor);
        }
    }
    if (calibratingSensors.empty()) {
        throw CalibrationException("No sensors to calibrate could be found");
    }
    if (!settings.isOffline && settings.usesDumps) {
        requireDumps(calibratingSensors);
    }
    return calibratingSensors;
}

bool SensorSelection::isEligible(const Sensor& sensor) const {
    if (settings.isCalibrating && sensor.isCalibratable() &&
        sensor.supportsRunType(settings.runCommand)) {
        return true;
    }
    return settings.isTesting && sensor.isTestable();
}

bool SensorSelection::isInstanceSelected(const Sensor& sensor) const {
    return isSecondary(sensor) ? settings.selectSecondary : settings.selectPrimary;
}

bool SensorSelection::isClassSelected(const Sensor& sensor) const {
    return (isOfClass(sensor, kAccelerometerName) && settings.selectAccelerometer) ||
           (isOfClass(sensor, kGyroscopeName) && settings.selectGyroscope) ||
           (isOfClass(sensor, kMagnetometerName) && settings.selectMagnetometer);
}

bool SensorSelection::isSelected(const Sensor& sensor) const {
    switch (settings.runCommand) {
        case RunCommand::MagEnvironmentTest:
            return isOfClass(sensor, kMagnetometerName);
        case RunCommand::CalibrateAls:
            return isOfClass(sensor, kAmbientLightName) && isInstanceSelected(sensor);
        case RunCommand::Calibrate:
        case RunCommand::TestCalibration:
            return isClassSelected(sensor) && isInstanceSelected(sensor);
        case RunCommand::None:
            break;
    }
    return false;
}

// Whatever its class: also a sensor that the run then leaves out.
bool SensorSelection::needsSecondInstance(const Sensor& sensor) const {
    return settings.isMotionRun() && !settings.runsWithoutDevice() && isSecondary(sensor) &&
           isInstanceSelected(sensor);
}

void SensorSelection::passOptions(Sensor& sensor) const {
    if (!settings.isMotionRun()) {
        return;
    }
    if (isOfClass(sensor, kGyroscopeName) && settings.noGyroRotation) {
        sensor.setNoGyroRotation(true);
    }
    if (settings.checkVsOriginalAxis) {
        sensor.setCheckVsOriginalAxis(true);
    }
}

void SensorSelection::requireDumps(const Sensors& sensors) const {
    for (const auto& sensor : sensors) {
        const std::string displayName = sensor->getDisplayName();
        if (!dumpFileExists(settings.dumpFolder, settings.dumpPrefix, displayName)) {
            throw CalibrationException("No datadump file for sensor " + displayName + " found");
        }
    }
}

}  // namespace tavocal
