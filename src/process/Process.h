#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vocabulary/RunTypes.h"

namespace tavocal {

class Sensor;
struct Sample;

// The script of one collection run: how many stages there are, what the operator is told before
// each, which sensors decide that a stage has ended, and when that moment is. Lives for one run.
//
// Threads: CalibrationControl and isStageIndicator run on the thread that delivers samples, under
// the lock that guards the sample store; the prompts and currentStep belong to the main thread;
// setStageIndicator and buildStages run before sampling starts.
class Process {
  public:
    virtual ~Process() = default;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Takes the run's configuration file.
    virtual void loadConfiguration(const std::string& /*path*/) {}
    // Once, after construction.
    virtual void prepare() {}

    // The prompt of currentStep, without a line end behind it.
    virtual std::string getInstructions(bool noEnter) = 0;
    // The collection loop must read the operator before this step.
    virtual bool needsUserInput() = 0;
    // Reads the operator; the answer, if any, goes to the sensors.
    virtual std::string readUserInput() = 0;
    // An operator types the level of each stage, and samples wait for the answer.
    virtual bool isInteractive() const { return false; }
    // This step closes the three rotations of the magnetic environment test.
    virtual bool isThreeRotationsStage() const { return false; }
    // A step ends by the operator's key, not by detection.
    virtual bool isUserPaced() const { return false; }
    // Samples keep the run's time base behind a stage that was waited for; if not, they have the
    // firmware's times from then on.
    virtual bool keepsTimeBase() const { return true; }

    // One sample of a stage indicator, with its timestamp on the run's time base. Raises
    // canMoveNext when a stage has ended; throws CalibrationException or SamplingException if the
    // run can't go on.
    virtual void CalibrationControl(const Sample& sample) = 0;
    virtual bool isStageIndicator(const Sensor& sensor) const = 0;

    // Type names of the sensors that can be indicators, the most wanted one first.
    virtual std::vector<std::string> requiredIndicatorTypes() const = 0;
    // Offers an indicator. True once the process has what it needs.
    virtual bool setStageIndicator(const std::shared_ptr<Sensor>& sensor) = 0;
    // Fills the stage table; called once all indicators are set.
    virtual void buildStages() {}
    virtual void addCalibratedSensor(const std::shared_ptr<Sensor>& /*sensor*/) {}

    // Ambient light runs: after sampling has stopped.
    virtual void finishCollection() {}
    // Ambient light replays: hands the levels to a sensor that was not asked for them.
    virtual void passLevelsToSensor(Sensor& /*sensor*/) const {}

    int stageCount = 0;
    int currentStep = 0;  // the step that the operator is being led through, from 0
    RunCommand runType = RunCommand::None;
    FlowType flowType = FlowType::Full;
    int stagesDone = -1;       // stages whose end has been detected
    bool canMoveNext = false;  // read and cleared by whoever delivers the samples
    // Begin and end of each stage in milliseconds; 2 * stageCount entries.
    std::vector<double> segmentTimes;
    // First and last sample index of each light level, both included; 2 * stageCount entries.
    std::vector<int> lightSegments;

  protected:
    Process() = default;
};

}  // namespace tavocal
