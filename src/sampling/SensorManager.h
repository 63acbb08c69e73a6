#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formats/SensorDataMap.h"
#include "sampling/FailureSummary.h"
#include "sampling/StageControl.h"
#include "sensors/RunContext.h"

namespace tavocal {

class Process;
class Sensor;

// Stands between the data sources and the sensors of one run: it holds every sample, hands each one
// to its sensor and then, for a stage indicator, to the guided sequence, and passes the end of a
// stage on.
class SensorManager : public RunContext {
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

    // Every stored sample of the run. Once sampling has stopped.
    const SensorDataMap& getSamples() const { return samples; }

    // Hands the operator's answer to every sensor.
    void stageChanged(const std::string& text);

    std::string failureSummary() const { return failures.text(); }

    // RunContext.
    RunCommand runType() const override;
    FlowType flowType() const override;
    int stageCount() const override;
    const std::vector<double>& segmentTimes() const override;
    const std::vector<int>& lightSegments() const override;
    bool isInteractive() const override;
    void addFailure(int kind, const std::string& sensorName) override;

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
    bool endsNear(double lastTime, const Sensor& sensor) const;
    const Sensor& findIndicator() const;
    const Sample* lastSampleOf(const Sensor& sensor) const;

    std::vector<std::shared_ptr<Sensor>> sensors;
    std::shared_ptr<Process> process;
    SensorDataMap samples;
    StageControl stages;
    FailureSummary failures;
    bool allStagesDone = false;  // also ends a replay
};

}  // namespace tavocal
