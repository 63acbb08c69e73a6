#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "firmware/SampleReceiver.h"
#include "sampling/LiveSampling.h"
#include "sampling/Replay.h"
#include "sampling/RunAnswers.h"
#include "sampling/SamplingState.h"
#include "sampling/UserPacedSteps.h"

namespace tavocal {

// Stands between the data sources and the sensors of one run. It is the one face of what samples:
// it is given the sensors and the sequence, and hands each operation to the part whose job it is.
//
// Threads: the record session's thread calls findSensor, handleData and, like any thread,
// stageDone; the interrupt thread may call stopSampling and getSamples; the main thread calls
// everything else. SamplingState tells of the locks.
class SensorManager : public SampleReceiver {
  public:
    // The sensors of the run, then its sequence, before anything is sampled or read. setProcess
    // finds the stage indicators; a motion run without an accelerometer gets one of its own. Throws
    // CalibrationException if the sequence can't have the sensors that it needs.
    void setSensors(const std::vector<std::shared_ptr<Sensor>>& sensors);
    void setProcess(const std::shared_ptr<Process>& process);

    // Reads the dumps of all sensors; `offline` takes the LUIDs from them too. Throws as
    // CsvParser::readFromFile.
    void loadDump(const std::string& folder, const std::string& prefix, bool offline) {
        replay.loadDump(folder, prefix, offline);
    }
    // Feeds the dumps' samples in time order through sensors and sequence, on this thread. Throws
    // CalibrationException if a calibration's dump ends before all stages were found, or if a
    // sensor's data ends early.
    void playData() { replay.playData(); }

    // Live runs. The interval of -SamplingInterval in milliseconds; without it one is chosen by the
    // kind of run and what the firmware can do.
    void setSamplingInterval(int milliseconds) { live.setSamplingInterval(milliseconds); }
    // Prepares the sensors to undo the firmware's calibration. Throws CalibrationException if one
    // can't be undone.
    void prepareSensors() { live.prepareSensors(); }
    // Switches the sensors on and opens the record session. Throws CalibrationException.
    void startSampling() { live.start(*this); }
    // Ends the session and switches the sensors off. Throws CalibrationException if the firmware
    // refuses, or if a sensor's data ended early.
    void stopSampling() { live.stop(); }
    // Waits for the end of the present step: at most 60 seconds for what the sequence detects, or
    // for the operator's key. `threeRotations`: the step closes the three rotations of the magnetic
    // environment test. Throws CalibrationException if the step failed.
    void waitForStepFinish(bool threeRotations);

    // SampleReceiver.
    std::optional<Target> findSensor(const std::string& luidText) override {
        return live.findSensor(luidText);
    }
    void handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                    double timeMs) override {
        live.handleData(sensor, values, timeMs);
    }
    void stageDone(bool status) override { state.stages.stageDone(status); }

    // Every stored sample of the run. Once sampling has stopped.
    const SensorDataMap& getSamples() const { return state.samples; }

    // Hands the operator's answer to every sensor.
    void stageChanged(const std::string& text);

    // What the run's sensors ask.
    RunContext& context() { return answers; }
    const std::vector<Judgement>& judgements() const { return answers.judgements(); }
    std::string failureSummary() const { return answers.failureSummary(); }

  private:
    void addAccelerometer();

    SamplingState state;
    RunAnswers answers{state};
    Replay replay{state};
    LiveSampling live{state};
    UserPacedSteps userSteps{state};
};

}  // namespace tavocal
