#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace tavocal {

class Process;
class Sensor;
class SensorManager;
struct RunSettings;

// The collection of a run's samples, live or replayed, and their dumps.
//
// Threads: everything runs on the main thread, but for abort, which the interrupt thread calls. The
// start and stop of sampling and the dumps pass InterruptGate, so that abort never meets one; a
// prompt or a stage's wait doesn't.
class DataCollection {
  public:
    // Both must outlive this object.
    DataCollection(const RunSettings& settings, SensorManager& sensorManager);

    // Leads through the stages of `process`, or replays the dumps. `writeReport` is called if a
    // magnetic environment test fails here, since its checks are in the report already; sampling
    // has stopped by then. Throws CalibrationException if the run can't be completed, or what
    // `writeReport` throws.
    void collectData(Process& process, const std::vector<std::shared_ptr<Sensor>>& sensors,
                     const std::function<void()>& writeReport);

    // The samples of a live run, once; nothing without an export folder.
    void writeDump();
    // The samples with the new calibration applied, for -ExportResult.
    void writeCalibratedDump();

    // Stops sampling and writes the dumps of what was collected. Interrupt thread, with the gate
    // closed.
    void abort();

    // Whole seconds that prompts waited for the operator.
    int userWaitSeconds() const { return waitSeconds; }

  private:
    enum class Status { NeverStarted = -1, Running = 0, Stopped = 1, DumpWritten = 2 };

    void replay(Process& process, const std::vector<std::shared_ptr<Sensor>>& sensors);
    void collectLive(Process& process, const std::function<void()>& writeReport);
    void runSteps(Process& process);
    void runStep(Process& process, int step);
    void readOperator(Process& process);
    void startSampling();
    void stopSampling();
    void stopAfterLastStep();
    void stopQuietly();
    void dump();
    void dumpCalibrated();
    void endFailedCollection(const std::function<void()>& writeReport);

    const RunSettings& settings;
    SensorManager& sensorManager;
    std::atomic<Status> collectionStatus{Status::NeverStarted};
    int waitSeconds = 0;
};

}  // namespace tavocal
