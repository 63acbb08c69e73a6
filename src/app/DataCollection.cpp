#include "app/DataCollection.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

#include "app/CalibratedDump.h"
#include "app/InterruptGate.h"
#include "base/Clock.h"
#include "base/Failures.h"
#include "commandline/RunSettings.h"
#include "formats/CsvParser.h"
#include "log/Logger.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "process/Process.h"
#include "sampling/SensorManager.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

using platform::print;

DataCollection::DataCollection(const RunSettings& runSettings, SensorManager& manager)
    : settings(runSettings), sensorManager(manager) {}

void DataCollection::collectData(Process& process,
                                 const std::vector<std::shared_ptr<Sensor>>& sensors,
                                 const std::function<void()>& writeReport) {
    if (settings.usesDumps) {
        replay(process, sensors);
    } else {
        collectLive(process, writeReport);
    }
}

// ---- Replay ----

void DataCollection::replay(Process& process, const std::vector<std::shared_ptr<Sensor>>& sensors) {
    if (!platform::isDirectory(settings.dumpFolder)) {
        throw CalibrationException("Folder " + settings.dumpFolder + " does not exist");
    }
    sensorManager.loadDump(settings.dumpFolder, settings.dumpPrefix, settings.isOffline);
    sensorManager.playData();
    if (process.runType == RunCommand::CalibrateAls) {
        for (const auto& sensor : sensors) {
            process.passLevelsToSensor(*sensor);
        }
    }
}

// ---- Live ----

void DataCollection::collectLive(Process& process, const std::function<void()>& writeReport) {
    if (settings.waitingTime == 0) {
        throw CalibrationException("Error. atoi() returned 0.");
    }
    print(process.getInstructions(settings.waitingTime.has_value()) + "\n");
    try {
        runSteps(process);
    } catch (const CalibrationException&) {
        endFailedCollection(writeReport);
        throw;
    } catch (const std::exception&) {
        stopQuietly();
        throw;
    }
    stopAfterLastStep();
    if (settings.runCommand == RunCommand::CalibrateAls) {
        process.finishCollection();
    }
}

void DataCollection::runSteps(Process& process) {
    for (int step = 0; step < process.stageCount; ++step) {
        runStep(process, step);
        if (step < process.stageCount - 1) {
            process.currentStep = std::min(process.currentStep + 1, process.stageCount - 1);
            print(process.getInstructions(true) + "\n");
        }
    }
}

void DataCollection::runStep(Process& process, int step) {
    if (process.needsUserInput() && !settings.waitingTime) {
        readOperator(process);
    }
    platform::Console::instance().flush();
    std::this_thread::sleep_for(std::chrono::milliseconds(settings.waitingTime.value_or(0)));
    if (step == 0) {
        startSampling();
    }
    sensorManager.waitForStepFinish(process.isThreeRotationsStage());
    print("\a");
    platform::Console::instance().flush();
    platform::Console::instance().writeColoured(platform::kLightGreen,
                                                "STEP " + std::to_string(step + 1) + " PASSED\n");
}

void DataCollection::readOperator(Process& process) {
    const std::uint64_t begin = currentTimeMs();
    const std::string answer = process.readUserInput();
    waitSeconds += static_cast<int>((currentTimeMs() - begin) / 1000);
    if (!answer.empty()) {
        sensorManager.stageChanged(answer);
    }
}

void DataCollection::startSampling() {
    InterruptGate::instance().pass([this] {
        sensorManager.startSampling();
        collectionStatus = Status::Running;
    });
}

void DataCollection::stopSampling() {
    if (collectionStatus == Status::Stopped) {
        return;
    }
    try {
        InterruptGate::instance().pass([this] {
            // Whatever comes of the stop, it is not tried again.
            collectionStatus = Status::Stopped;
            sensorManager.stopSampling();
        });
    } catch (const CalibrationException&) {
        TAVOCAL_LOG(Debug, "CalibrationManager::stopSampling",
                    "CalibrationManager::start, caught CalibrationException");
        throw;
    }
}

// A stop that the firmware refuses ends the run as a failed step does: what was collected is
// dumped, but no calibration is made of it and nothing is written into the firmware.
void DataCollection::stopAfterLastStep() {
    try {
        stopSampling();
    } catch (const CalibrationException&) {
        print(
            "DATA COLLECTION FAILED since there are significant differences in last sample's "
            "timestamp between sensors\n");
        throw;
    } catch (const std::exception& exception) {
        print(std::string("DATA COLLECTION FAILED:") + exception.what() + "\n");
        throw CalibrationException("failed during sampling sensors");
    }
}

// The report comes last: it may fail, and then the samples are still to be dumped.
void DataCollection::endFailedCollection(const std::function<void()>& writeReport) {
    if (!settings.isMagTest) {
        platform::Console::instance().writeColoured(platform::kLightRed,
                                                    "DATA COLLECTION FAILED\n");
        // The stop may have to wait for the firmware.
        platform::Console::instance().flush();
    }
    stopQuietly();
    if (settings.isMagTest) {
        writeReport();
    }
}

void DataCollection::stopQuietly() {
    try {
        stopSampling();
    } catch (const CalibrationException&) {
        // The failure that ended the collection is the one to tell.
        TAVOCAL_LOG(Debug, "CalibrationManager::collectData", "Failed to stop after a failure");
    }
}

// ---- Dumps ----

void DataCollection::writeDump() {
    InterruptGate::instance().pass([this] { dump(); });
}

void DataCollection::dump() {
    if (!settings.exportFolderSet || settings.usesDumps ||
        collectionStatus == Status::DumpWritten) {
        return;
    }
    TAVOCAL_LOG(Debug, "CalibrationManager::writeDump",
                "write dump func, data collecting status is: " +
                    std::to_string(static_cast<int>(collectionStatus.load())));
    const std::string path = settings.exportFolder + "dataDump";
    print("Saving data dump to file " + path + "\n");
    CsvParser().writeToFile(path + ".csv", sensorManager.getSamples());
    collectionStatus = Status::DumpWritten;
}

void DataCollection::writeCalibratedDump() {
    InterruptGate::instance().pass([this] { dumpCalibrated(); });
}

void DataCollection::dumpCalibrated() {
    if (!settings.exportFolderSet || !settings.exportsResult) {
        return;
    }
    TAVOCAL_LOG(Debug, "CalibrationManager::writeCalibratedDump",
                "write out dump func, data collecting status is: " +
                    std::to_string(static_cast<int>(collectionStatus.load())));
    const std::string path = settings.exportFolder + "calibratedDataDump";
    print("Saving out data dump to file " + path + "\n");
    CsvParser().writeToFile(path + ".csv", calibratedSamples(sensorManager.getSamples()));
    collectionStatus = Status::DumpWritten;
}

// ---- Interrupt ----

void DataCollection::abort() {
    constexpr const char* kName = "CalibrationManager::abort";
    const Status status = collectionStatus;
    TAVOCAL_LOG(Debug, kName,
                "data collecting status is: " + std::to_string(static_cast<int>(status)));
    if (status == Status::NeverStarted) {
        return;
    }
    if (status == Status::Running) {
        TAVOCAL_LOG(Debug, kName, "Calling stop sampling func");
        try {
            sensorManager.stopSampling();
        } catch (const CalibrationException&) {
            TAVOCAL_LOG(Warning, kName, "Caught exception");
        }
    }
    TAVOCAL_LOG(Debug, kName, "Calling write dump func");
    try {
        dump();
    } catch (const CalibrationException& exception) {
        TAVOCAL_LOG(Warning, kName, "Caught exception");
        TAVOCAL_LOG(Warning, kName, exception.what());
    }
}

}  // namespace tavocal
