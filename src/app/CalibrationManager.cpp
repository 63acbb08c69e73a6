#include "app/CalibrationManager.h"

#include "app/CrossSensorChecks.h"
#include "app/MakeProcess.h"
#include "app/RunReport.h"
#include "app/SensorSelection.h"
#include "base/Failures.h"
#include "base/Text.h"
#include "commandline/CmdLine.h"
#include "firmware/MakeKelu.h"
#include "formats/CalibrationXml.h"
#include "formats/TestingConfigFile.h"
#include "log/Logger.h"
#include "log/ScopeLog.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "process/Process.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/magnetic/Magnetometer.h"
#include "vocabulary/FormFactor.h"
#include "vocabulary/SensorTypes.h"
#include "vocabulary/TestingConfig.h"

namespace tavocal {

namespace {

constexpr const char* kStartName = "CalibrationManager::start";
constexpr const char* kAllSensorsFailed = "Calibration failed for all sensors. ";

}  // namespace

using platform::print;

CalibrationManager::CalibrationManager(const CmdLine& cmdLine)
    : settings(runSettings(cmdLine)),
      collection(settings, sensorManager),
      firmware(settings, [] { return makeKelu(); }) {
    makeExportFolder();
}

CalibrationManager::~CalibrationManager() = default;

void CalibrationManager::makeExportFolder() const {
    if (!settings.exportFolderSet) {
        return;
    }
    // Without the backslash behind it.
    const std::string folder = settings.exportFolder.substr(0, settings.exportFolder.size() - 1);
    if (platform::createFolders(folder) == platform::FolderResult::Failed) {
        print("Failed creating directory\n");
    }
}

void CalibrationManager::abort() {
    collection.abort();
}

// ---- The run ----

void CalibrationManager::start() {
    TAVOCAL_SCOPE_STARTED(kStartName);
    loadTestingConfig(testingConfig());
    if (settings.samples()) {
        process = makeProcess(settings);
    }
    initSensors();
    printSensors();
    if (settings.samples()) {
        prepareSampling();
    }
    if (settings.readsFirmware()) {
        saveCurrentCalibration();
    }
    try {
        collectAndWork();
    } catch (const CalibrationException& exception) {
        handleFailure(exception.what());
        throw;
    }
    finish();
}

void CalibrationManager::initSensors() {
    const SensorSelection selection(settings);
    if (settings.runsWithoutDevice()) {
        physicalSensors = selection.initSensorsFromDumps();
    } else {
        firmware.checkAdministrator();
        TAVOCAL_LOG(Info, kStartName, "before initPhysicalSensors");
        physicalSensors = firmware.initPhysicalSensors();
        TAVOCAL_LOG(Info, kStartName, "after initPhysicalSensors");
    }
    if (settings.samples()) {
        calibratingSensors = selection.initCalibratingSensors(
            physicalSensors, [this] { firmware.checkSecondInstance(); });
        TAVOCAL_LOG(Debug, kStartName, "After initCalibratingSensors");
    }
    if (settings.isCalibrating) {
        dynamicSensors = firmware.matchDynamicSensors(calibratingSensors, physicalSensors);
    }
    if (settings.readsFirmware()) {
        firmware.loadSensorsData(physicalSensors, calibratingSensors, dynamicSensors);
    }
}

void CalibrationManager::printSensors() const {
    print("Sensors to calibrate: \n");
    for (const auto& sensor : calibratingSensors) {
        print("\t" + sensor->getLuidText() + ", " + sensor->getDisplayName() +
              ", formfactor: " + formFactorText(sensor->formFactor) +
              ", hinge configuration: " + hingeText(sensor->hinge) + "\n");
    }
}

void CalibrationManager::prepareSampling() {
    sensorManager.setSensors(calibratingSensors);
    sensorManager.setProcess(process);
    if (settings.usesDumps) {
        return;
    }
    if (settings.samplingInterval) {
        sensorManager.setSamplingInterval(*settings.samplingInterval);
    }
    sensorManager.prepareSensors();
}

void CalibrationManager::saveCurrentCalibration() const {
    if (settings.exportFolderSet) {
        const std::string path = settings.exportFolder + "currentCalibration.xml";
        print("Saving original calibration data to file " + path + "\n");
        saveCalibrationXml(path, physicalSensors, true);
    }
    if (settings.exportsXml) {
        saveExport();
    }
}

void CalibrationManager::saveExport() const {
    const std::string& path = settings.exportFile;
    print("Saving original calibration data to file " + path + "\n");
    const std::size_t separator = path.rfind('\\');
    if (separator != std::string::npos) {
        const std::string folder = path.substr(0, separator);
        if (platform::createFolder(folder) == platform::FolderResult::Failed) {
            throw CalibrationException("Failed to create path " + folder);
        }
    }
    saveCalibrationXml(path, physicalSensors, true);
}

void CalibrationManager::collectAndWork() {
    if (settings.samples()) {
        TAVOCAL_LOG(Info, kStartName, "before  collectData");
        collection.collectData(*process, calibratingSensors, [this] { writeReport(); });
        print("data collection finished\n");
        if (settings.isCalibrating) {
            calibrateAll();
        } else if (settings.isMagTest) {
            magTest();
        } else {
            testAll();
        }
    }
    if (settings.exportFolderSet && settings.isCalibrating) {
        const std::string path = settings.exportFolder + "resultCalibration.xml";
        print("Saving calibration data to file " + path + "\n");
        saveCalibrationXml(path, physicalSensors, false);
    }
    if (settings.writesFirmware()) {
        print("Saving calibration data to FW\n");
        firmware.flushCalibrationData(physicalSensors);
    }
}

void CalibrationManager::handleFailure(const std::string& reason) {
    TAVOCAL_LOG(Debug, kStartName, "Caught CalibrationException - " + reason);
    platform::Console::instance().writeColoured(
        platform::kLightRed, settings.isTesting ? "TEST FAILED\n" : "CALIBRATION FAILED\n");
    if (process != nullptr) {
        process->currentStep = 0;
    }
    collection.writeDump();
    Logger::instance().saveLogFile();
    TAVOCAL_LOG(Error, kStartName, "LOG FILE IS SAVED SINCE ERROR OCCURED.");
}

void CalibrationManager::finish() {
    collection.writeDump();
    if (settings.isCalibrating) {
        collection.writeCalibratedDump();
    }
    if (settings.isCalibrating || settings.isMagTest) {
        for (const auto& sensor : calibratingSensors) {
            print(sensor->toDisplayText());
        }
    }
    platform::Console::instance().writeColoured(platform::kLightGreen,
                                                settings.isCalibrating
                                                    ? "Calibration process completed successfully\n"
                                                    : "Completed successfully\n");
}

void CalibrationManager::writeReport() const {
    writeRunReport(settings, physicalSensors);
}

// ---- Calibration ----

void CalibrationManager::calibrateAll() {
    bool ok = true;
    std::string failure;
    for (const auto& sensor : calibratingSensors) {
        TAVOCAL_LOG(Insane, "CalibrationManager::calibrateAll",
                    "calling calibrate " + sensor->getDisplayName());
        try {
            calibrateSensor(sensor);
        } catch (const CalibrationException& exception) {
            ok = false;
            const std::string message = exception.what();
            if (contains(message, kAllSensorsFailed)) {
                failure = message;
                break;
            }
            failure += (failure.empty() ? "" : "\n") + message;
            if (!sensor->isPrimary()) {
                failure +=
                    " To calibrate only the primary sensor, you can use the primary sensors only "
                    "option";
            }
        }
    }
    // The flow that was asked for. A run with an accelerometer alone counts as full too; it has no
    // two sensors to compare.
    if (ok && settings.flowType == FlowType::Full) {
        try {
            crossSensorChecks().checkCalibration();
        } catch (const CalibrationException& exception) {
            ok = false;
            failure = exception.what();
        }
    }
    TAVOCAL_LOG(Insane, "CalibrationManager::calibrateAll", "finished calibration");
    writeReport();
    if (!ok) {
        throw CalibrationException(failure);
    }
}

void CalibrationManager::calibrateSensor(const std::shared_ptr<Sensor>& sensor) const {
    sensor->calibrate();
    const auto* inertial = dynamic_cast<const InertialSensor*>(sensor.get());
    const auto found = dynamicSensors.find(sensor);
    if (settings.flowType == FlowType::Minimal || inertial == nullptr ||
        found == dynamicSensors.end()) {
        return;
    }
    if (!found->second->originalCalibration.empty()) {
        found->second->setWhiteNoise(inertial->whiteNoiseInFirmwareUnits());
    }
}

// ---- Test ----

void CalibrationManager::testAll() {
    bool ok = true;
    for (const auto& sensor : calibratingSensors) {
        TAVOCAL_LOG(Insane, "CalibrationManager::testAll",
                    "calling testCalibration " + sensor->getDisplayName());
        ok = testSensor(*sensor) && ok;
    }
    if (settings.flowType != FlowType::Minimal) {
        ok = ok && compareRotations(true);
        ok = ok && compareRotations(false);
    }
    TAVOCAL_LOG(Insane, "CalibrationManager::testAll", "finished testing");
    writeReport();
    if (!ok) {
        failTest();
    }
    print("----   test pass -----\n");
}

// Nothing to compare is no failure.
bool CalibrationManager::compareRotations(bool primary) {
    const auto find = [&](const char* className) -> std::shared_ptr<Sensor> {
        for (const auto& sensor : calibratingSensors) {
            if (sensor->isPrimary() == primary && contains(sensor->getDisplayName(), className)) {
                return sensor;
            }
        }
        return nullptr;
    };
    const auto acc = find(kAccelerometerName);
    const auto gyro = find(kGyroscopeName);
    const auto mag = find(kMagnetometerName);
    if (acc == nullptr && gyro == nullptr && mag == nullptr) {
        return true;
    }
    return crossSensorChecks().compareRotation(acc, gyro, mag);
}

bool CalibrationManager::testSensor(Sensor& sensor) const {
    try {
        const bool passed = sensor.testCalibration();
        if (sensor.report.exists()) {
            sensor.report.setRootAttribute("Success", passed ? "true" : "false");
        }
        return passed;
    } catch (const CalibrationException& exception) {
        TAVOCAL_LOG(Debug, "CalibrationManager::testAll",
                    "sensor " + sensor.getDisplayName() + " " + exception.what());
        return false;
    }
}

void CalibrationManager::failTest() const {
    const std::string text = sensorManager.failureSummary();
    if (settings.exportFolderSet &&
        !platform::writeTextFile(settings.exportFolder + "\\error.log", text).empty()) {
        throw CalibrationException("Error. NULL referenced.");
    }
    throw CalibrationException(text);
}

void CalibrationManager::magTest() {
    constexpr const char* kName = "CalibrationManager::magTest";
    try {
        evaluateMagEnvironment();
    } catch (const CalibrationException&) {
        TAVOCAL_LOG(Insane, kName, "finished magnetic environment test");
        writeReport();
        throw;
    }
    TAVOCAL_LOG(Insane, kName, "finished magnetic environment test");
    writeReport();
}

// The indicator is the magnetometer that the test was made with.
void CalibrationManager::evaluateMagEnvironment() const {
    for (const auto& sensor : calibratingSensors) {
        auto* magnetometer = dynamic_cast<Magnetometer*>(sensor.get());
        if (magnetometer != nullptr && process->isStageIndicator(*sensor)) {
            magnetometer->evaluateMagEnvironment();
            return;
        }
    }
    throw CalibrationException("Error. NULL referenced.");
}

CrossSensorChecks CalibrationManager::crossSensorChecks() {
    return CrossSensorChecks(
        calibratingSensors,
        {settings.selectAccelerometer, settings.selectGyroscope, settings.selectMagnetometer},
        sensorManager.context());
}

}  // namespace tavocal
