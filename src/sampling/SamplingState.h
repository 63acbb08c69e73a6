#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "formats/SensorDataMap.h"
#include "sampling/StageControl.h"

namespace tavocal {

class Process;

// What the parts of a run's sampling share, and the way of one sample: to its sensor, for a stage
// indicator to the sequence, and from there the end of a stage to whoever waits for it.
//
// dataMutex covers one sample's way into the store, its sensor and the sequence in a live run;
// nothing else is locked under it but the leaf lock of the log and the locks of the sensors. A
// stage's end is passed on outside of it. A replay is one thread and takes no lock.
struct SamplingState {
    // Throws what the sensor or the sequence throws. Live: REQUIRES dataMutex.
    void deliver(Sensor& sensor, const Sample& sample);
    // Finishes the step if the sequence has found its end with a sample of this sensor. `caller` is
    // for the log.
    void passStageEnd(const Sensor& sensor, const char* caller);
    // The present step is over, by what the sequence found or by the operator's key.
    void finishStep();

    std::vector<std::shared_ptr<Sensor>> sensors;
    std::shared_ptr<Process> process;
    std::mutex dataMutex;
    SensorDataMap samples;
    StageControl stages;
    bool allStagesDone = false;  // also ends a replay
};

}  // namespace tavocal
