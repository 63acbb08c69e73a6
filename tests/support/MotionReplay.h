#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "process/NewMotionProcess.h"
#include "sensors/InertialSensor.h"
#include "sensors/RunContext.h"
#include "simulator/Recording.h"

namespace tavocal::test {

// "Accelerometer", "Gyroscope" or "Magnetometer", with "_2" behind it for the secondary one; a
// static sensor.
std::shared_ptr<InertialSensor> makeNamedSensor(const std::string& displayName);

// A run of motion sensors: one whose stages are found in a recording, or one whose stages a test
// writes into `process` by hand.
class MotionReplay : public RunContext {
  public:
    explicit MotionReplay(FlowType flow, RunCommand command = RunCommand::Calibrate);

    // The sensor works in this run from now on; a primary one is an indicator too.
    void add(const std::shared_ptr<InertialSensor>& sensor);
    // Plays the samples of the sensors in time order until all stages are found. False if they end
    // before that.
    bool play(const simulator::Recording& recording);

    RunCommand runType() const override { return process.runType; }
    FlowType flowType() const override { return process.flowType; }
    int stageCount() const override { return process.stageCount; }
    const std::vector<double>& segmentTimes() const override { return process.segmentTimes; }
    const std::vector<int>& lightSegments() const override { return process.lightSegments; }
    bool isInteractive() const override { return false; }
    void addFailure(int kind, const std::string& sensorName) override;

    NewMotionProcess process;
    std::vector<std::pair<int, std::string>> failures;

  private:
    void deliver(InertialSensor& sensor, const simulator::Row& row);

    std::vector<std::shared_ptr<InertialSensor>> sensors;
};

// One sample of a recording.
Sample sampleOf(const simulator::Row& row);

// The sensor's element of the report in one line, or "" if there is none. Nothing may be reported
// afterwards.
std::string reportOf(Sensor& sensor);

}  // namespace tavocal::test
