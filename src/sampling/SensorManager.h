#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "firmware/SampleReceiver.h"
#include "formats/SensorDataMap.h"
#include "sampling/FailureSummary.h"
#include "sampling/LiveTimeBase.h"
#include "sampling/StageControl.h"
#include "sampling/UserPacedSteps.h"
#include "sensors/model/RunContext.h"

namespace tavocal {

class Process;
class Sensor;
struct SampledSensor;

// Stands between the data sources and the sensors of one run: it holds every sample, hands each one
// to its sensor and then, for a stage indicator, to the guided sequence, and passes the end of a
// stage on.
//
// Threads: the record session's thread calls findSensor, handleData and, like any thread,
// stageDone; the interrupt thread may call stopSampling and getSamples; the main thread calls
// everything else. dataMutex covers one sample's way into the store, its sensor and the sequence;
// nothing else is locked under it but the leaf lock of the log and the locks of the sensors.
class SensorManager : public RunContext, public SampleReceiver {
  public:
    SensorManager();
    ~SensorManager() override;

    // The sensors of the run, then its sequence, before anything is sampled or read. setProcess
    // finds the stage indicators; a motion run without an accelerometer gets one of its own. Throws
    // CalibrationException if the sequence can't have the sensors that it needs.
    void setSensors(const std::vector<std::shared_ptr<Sensor>>& sensors);
    void setProcess(const std::shared_ptr<Process>& process);

    // Reads the dumps of all sensors; `offline` takes the LUIDs from them too. Throws as
    // CsvParser::readFromFile.
    void loadDump(const std::string& folder, const std::string& prefix, bool offline);
    // Feeds the dumps' samples in time order through sensors and sequence, on this thread. Throws
    // CalibrationException if a calibration's dump ends before all stages were found, or if a
    // sensor's data ends early.
    void playData();

    // Live runs. The interval of -SamplingInterval in milliseconds; without it one is chosen by the
    // kind of run and what the firmware can do.
    void setSamplingInterval(int milliseconds);
    // Prepares the sensors to undo the firmware's calibration. Throws CalibrationException if one
    // can't be undone.
    void prepareSensors();
    // Switches the sensors on and opens the record session. Throws CalibrationException.
    void startSampling();
    // Ends the session and switches the sensors off. Throws CalibrationException if the firmware
    // refuses, or if a sensor's data ended early.
    void stopSampling();
    // Waits for the end of the present step: at most 60 seconds for what the sequence detects, or
    // for the operator's key. `threeRotations`: the step closes the three rotations of the magnetic
    // environment test. Throws CalibrationException if the step failed.
    void waitForStepFinish(bool threeRotations);

    // SampleReceiver.
    std::optional<Target> findSensor(const std::string& luidText) override;
    void handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                    double timeMs) override;
    void stageDone(bool status) override;

    // Every stored sample of the run. Once sampling has stopped.
    const SensorDataMap& getSamples() const { return samples; }

    // Hands the operator's answer to every sensor.
    void stageChanged(const std::string& text);

    std::string failureSummary() const { return failures.text(); }
    // What the run has judged up to now, in order. Main thread.
    const std::vector<Judgement>& judgements() const { return judgementList; }

    // RunContext.
    RunCommand runType() const override;
    FlowType flowType() const override;
    int stageCount() const override;
    const std::vector<double>& segmentTimes() const override;
    const std::vector<int>& lightSegments() const override;
    bool isInteractive() const override;
    void judged(Judgement judgement) override;
    void addFailure(FailureKind kind, const std::string& sensorName) override;

  private:
    void offerIndicators();
    bool offerToProcess(const std::shared_ptr<Sensor>& sensor, bool acceptedBefore,
                        std::vector<std::string>& primariesSeen);
    void addAccelerometer();
    bool replaySample(Sensor& sensor, const Sample& sample);
    void deliver(Sensor& sensor, const Sample& sample);
    bool takeStageEnd(const Sensor& sensor);
    void finishStep();
    void checkDataStreamingValidity() const;
    void chooseReportInterval();
    std::uint32_t largestMinimalInterval() const;
    void storeLive(const std::shared_ptr<Sensor>& sensor, const Sample& sample);
    void waitForKey(bool threeRotations);
    std::vector<SampledSensor> sampledSensors() const;

    std::vector<std::shared_ptr<Sensor>> sensors;
    std::map<std::string, std::shared_ptr<Sensor>> sensorsByLuid;
    std::shared_ptr<Process> process;
    std::mutex dataMutex;
    SensorDataMap samples;
    StageControl stages;
    std::vector<Judgement> judgementList;
    FailureSummary failures;
    bool allStagesDone = false;  // also ends a replay
    UserPacedSteps userSteps;

    std::optional<int> samplingInterval;  // -SamplingInterval, in milliseconds
    std::uint32_t reportInterval = 0;     // what is asked of the firmware, in milliseconds

    LiveTimeBase liveTimeBase;
};

}  // namespace tavocal
