#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace tavocal {

class Process;
class Sensor;
class SensorManager;
struct RunSettings;

// The collection of a run's samples, live or replayed, and their dumps.
//
// Threads: everything runs on the main thread, but for abort, which the interrupt thread calls.
// collectionMutex guards the start and stop of sampling and is taken before dumpMutex; neither is
// held during a prompt or a stage's wait.
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

    // Stops sampling and writes the dumps of what was collected. Interrupt thread.
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
    void endFailedCollection(const std::function<void()>& writeReport);

    const RunSettings& settings;
    SensorManager& sensorManager;
    std::mutex collectionMutex;
    std::mutex dumpMutex;
    std::atomic<Status> collectionStatus{Status::NeverStarted};
    int waitSeconds = 0;
};

}  // namespace tavocal
