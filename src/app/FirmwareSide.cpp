#include "app/FirmwareSide.h"

#include <utility>

#include "app/InterruptGate.h"
#include "base/Failures.h"
#include "commandline/RunSettings.h"
#include "formats/CalibrationXml.h"
#include "log/Logger.h"
#include "platform/Console.h"
#include "platform/ProcessStart.h"
#include "platform/Rights.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/FormFactor.h"

namespace tavocal {

namespace {

constexpr const char* kRestartScript = "restartSensorSvc.bat";

bool isCompanion(const Sensor& calibrating, const Sensor& candidate) {
    const LUID c = calibrating.getLuid();
    const LUID p = candidate.getLuid();
    return p.Flags != 0 && p.VendorId == 0 && c.InstanceId == 0 && p.InstanceId == 0 &&
           c.SensorTypeId == p.SensorTypeId;
}

// The walk goes on behind a match, as every match is logged.
void requireListed(const Sensor& imported, const std::vector<LUID>& listed) {
    bool found = false;
    for (const LUID& luid : listed) {
        if (luidText(luid) == imported.getLuidText()) {
            found = true;
            TAVOCAL_LOG(Info, "CalibrationManager::initPhysicalSensors",
                        "found sensor " + imported.getDisplayName());
        }
    }
    if (found) {
        return;
    }
    const std::string displayName = imported.getDisplayName();
    if (displayName.empty()) {
        throw CalibrationException(
            "A matching physical sensor was not found for writing the calibration data of " +
            imported.getLuidText());
    }
    throw CalibrationException("A matching " + displayName +
                               " physical sensor was not found on the platform in order to write "
                               "the calibration data of " +
                               imported.getLuidText());
}

}  // namespace

FirmwareSide::FirmwareSide(const RunSettings& runSettings, SDT::ChannelFactory channelFactory)
    : settings(runSettings), makeChannel(std::move(channelFactory)) {}

void FirmwareSide::checkAdministrator() const {
    if (!platform::hasDeviceRights()) {
        throw CalibrationException(
            "Process does not have required priviliges. Please run as Administrator");
    }
}

void FirmwareSide::checkSecondInstance() const {
    const auto formFactor = static_cast<FormFactor>(sdt().getFormFactor());
    if (formFactor != FormFactor::twoInOne && formFactor != FormFactor::mid) {
        throw CalibrationException(
            "Second sensor instance for form factors other than 2in1 or MID is not supported, "
            "please check PDT form factor type. To calibrate only the primary sensor, you can use "
            "the primary sensors only option");
    }
}

FirmwareSide::Sensors FirmwareSide::initPhysicalSensors() const {
    const std::vector<LUID> listed = sdt().enumerateSensors();
    Sensors sensors;
    if (settings.importsXml) {
        SDT firmware = sdt();
        sensors = loadCalibrationXml(settings.importFile, firmware);
        for (const auto& sensor : sensors) {
            requireListed(*sensor, listed);
        }
        return sensors;
    }
    for (const LUID& luid : listed) {
        sensors.push_back(makeSensor(luid));
    }
    return sensors;
}

FirmwareSide::Companions FirmwareSide::matchDynamicSensors(const Sensors& calibratingSensors,
                                                           const Sensors& physicalSensors) const {
    Companions companions;
    if (settings.runCommand != RunCommand::Calibrate || settings.flowType == FlowType::Minimal) {
        return companions;
    }
    for (const auto& calibrating : calibratingSensors) {
        for (const auto& candidate : physicalSensors) {
            if (candidate != calibrating && isCompanion(*calibrating, *candidate)) {
                companions[calibrating] = candidate;
            }
        }
    }
    return companions;
}

void FirmwareSide::loadSensorsData(const Sensors& physicalSensors,
                                   const Sensors& calibratingSensors,
                                   const Companions& companions) const {
    if (settings.exportsXml) {
        platform::print("Loading calibration data from FW, this might take a while...\n");
    }
    for (const auto& sensor : settings.exportsXml ? physicalSensors : calibratingSensors) {
        loadSensor(*sensor);
    }
    const bool withCompanions = !settings.exportsXml && settings.flowType != FlowType::Minimal &&
                                settings.runCommand == RunCommand::Calibrate;
    if (withCompanions) {
        for (const auto& [calibrating, companion] : companions) {
            loadSensor(*companion);
        }
    }
}

void FirmwareSide::loadSensor(Sensor& sensor) const {
    constexpr const char* kName = "CalibrationManager::loadSensorsData";
    TAVOCAL_LOG(Debug, kName, "Calling getCalibrationData for sensor " + sensor.getDisplayName());
    try {
        SDT firmware = sdt();
        sensor.loadFromFirmware(firmware);
    } catch (const SmhiException&) {
        TAVOCAL_LOG(Warning, kName, "Caught exception from getCalibrationData");
    }
}

void FirmwareSide::flushCalibrationData(const Sensors& physicalSensors) const {
    InterruptGate::instance().pass([&] { writeBlocks(physicalSensors); });
}

void FirmwareSide::writeBlocks(const Sensors& physicalSensors) const {
    constexpr const char* kName = "CalibrationManager::flushCalibrationData";
    TAVOCAL_LOG(Info, kName, "Started flushCalibrationData");
    for (const auto& sensor : physicalSensors) {
        sdt().setCalibrationData(sensor->getLuid(), sensor->calibrationToWrite);
    }
    restartTavo();
    TAVOCAL_LOG(Info, kName, "Finished flushCalibrationData");
}

void FirmwareSide::restartTavo() const {
    constexpr const char* kName = "CalibrationManager::restartTavo";
    TAVOCAL_LOG(Debug, kName, "Started restart Tavo");
    sdt().resetTavo();
    TAVOCAL_LOG(Debug, kName, "Finished restart Tavo");
    platform::startDetached(kRestartScript);
}

}  // namespace tavocal
