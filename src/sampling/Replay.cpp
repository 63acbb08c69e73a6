#include "sampling/Replay.h"

#include "base/Failures.h"
#include "formats/CsvParser.h"
#include "formats/DumpPaths.h"
#include "log/Logger.h"
#include "platform/Console.h"
#include "process/Process.h"
#include "sampling/ReplayMerge.h"
#include "sampling/SamplingState.h"
#include "sampling/StreamValidity.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr const char* kName = "SensorManager::playData";

}  // namespace

Replay::Replay(SamplingState& samplingState) : state(samplingState) {}

void Replay::loadDump(const std::string& folder, const std::string& prefix, bool offline) {
    platform::print("Loading data dump, this might take a while...\n");
    state.samples = CsvParser().readFromFile(dumpTemplate(folder, prefix), state.sensors, offline);
}

void Replay::playData() {
    if (!playUntilLastStage()) {
        return;
    }
    const Process& process = *state.process;
    const bool needsAllStages =
        process.runType == RunCommand::Calibrate || process.runType == RunCommand::CalibrateAls;
    if (needsAllStages && process.stagesDone != process.stageCount) {
        throw CalibrationException(
            "Unexpected data dump size. Not enough data for completing the calibration process");
    }
    checkDataStreamingValidity(state);
}

// False if a sensor or the sequence can't go on: the run then works with what got through.
bool Replay::playUntilLastStage() {
    std::vector<const std::vector<Sample>*> streams;
    for (const auto& sensor : state.sensors) {
        const auto found = state.samples.find(sensor);
        streams.push_back(found == state.samples.end() ? nullptr : &found->second);
    }
    ReplayMerge merge(streams);
    std::size_t stream = 0;
    while (!state.allStagesDone) {
        const Sample* sample = merge.next(stream);
        if (sample == nullptr) {
            break;
        }
        if (!playSample(*state.sensors[stream], *sample)) {
            return false;
        }
    }
    return true;
}

bool Replay::playSample(Sensor& sensor, const Sample& sample) {
    try {
        state.deliver(sensor, sample);
    } catch (const SamplingException& exception) {
        TAVOCAL_LOG(Debug, kName, "Caught exception from dataRecieved");
        state.stages.stageFailed(exception.what());
        throw;
    } catch (const CalibrationException& exception) {
        TAVOCAL_LOG(Debug, kName, "Caught exception from dataRecieved, aborting");
        state.stages.stageFailed(exception.what());
        return false;
    }
    state.passStageEnd(sensor, kName);
    return true;
}

}  // namespace tavocal
