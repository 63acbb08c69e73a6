#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/CrossSensorChecks.h"
#include "app/DataCollection.h"
#include "app/FirmwareSide.h"
#include "commandline/RunSettings.h"
#include "sampling/SensorManager.h"

namespace tavocal {

class CmdLine;
class Process;
class Sensor;

// The conductor of one run: it finds or replays the sensors, makes the guided sequence, lets
// operator and SensorManager collect data, asks each sensor to calibrate or test itself, and writes
// files and firmware. Owns everything of the run. One start per object.
class CalibrationManager {
  public:
    // Makes the export folder; a failure is told on the console, and the run goes on.
    explicit CalibrationManager(const CmdLine& cmdLine);
    ~CalibrationManager();

    // The whole run. Throws what ended it. Main thread.
    void start();

    // Stops sampling and writes the dumps of what was collected. Interrupt thread, with the gate
    // closed.
    void abort();

    // Everything that the run has judged up to now, passed or failed, in order; also after a start
    // that threw. Main thread.
    const std::vector<Judgement>& judgements() const { return sensorManager.judgements(); }

    const std::string& exportFolder() const { return settings.exportFolder; }
    // Whole seconds that prompts waited for the operator.
    int userWaitSeconds() const { return collection.userWaitSeconds(); }

  private:
    void makeExportFolder() const;
    void initSensors();
    void printSensors() const;
    void prepareSampling();
    void saveCurrentCalibration() const;
    void saveExport() const;
    void collectAndWork();
    void calibrateAll();
    void calibrateSensor(const std::shared_ptr<Sensor>& sensor) const;
    void testAll();
    bool compareRotations(bool primary);
    bool testSensor(Sensor& sensor) const;
    [[noreturn]] void failTest() const;
    void magTest();
    void evaluateMagEnvironment() const;
    CrossSensorChecks crossSensorChecks();
    void writeReport() const;
    void handleFailure(const std::string& reason);
    void finish();

    RunSettings settings;
    SensorManager sensorManager;
    DataCollection collection;
    FirmwareSide firmware;
    std::vector<std::shared_ptr<Sensor>> physicalSensors;     // every sensor of the run
    std::vector<std::shared_ptr<Sensor>> calibratingSensors;  // those that the run works on
    FirmwareSide::Companions dynamicSensors;
    std::shared_ptr<Process> process;  // null for XML commands
};

}  // namespace tavocal
