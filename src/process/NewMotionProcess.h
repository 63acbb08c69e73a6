#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "process/MotionStages.h"
#include "process/Process.h"

namespace tavocal {

class InertialSensor;

// The script of every accelerometer, gyroscope and magnetometer run, live or replayed. It follows
// the device by itself: a stage ends when the indicators have been still for a second, and the next
// one is looked for once the device has turned (Full flow) or left its position.
class NewMotionProcess : public Process {
  public:
    explicit NewMotionProcess(FlowType flow);

    std::string getInstructions(bool noEnter) override;
    bool needsUserInput() override;
    // Reads one key. Throws CalibrationException "Internal error" after the first step.
    std::string readUserInput() override;
    // Throws CalibrationException "segmentation error" if a lengthened stage would pass the start
    // of the next one.
    void CalibrationControl(const Sample& sample) override;
    bool isStageIndicator(const Sensor& sensor) const override;
    std::vector<std::string> requiredIndicatorTypes() const override;
    // Throws CalibrationException for a sensor that is no accelerometer, gyroscope or magnetometer.
    bool setStageIndicator(const std::shared_ptr<Sensor>& sensor) override;
    void buildStages() override;

  private:
    enum class DetectionState {
        StillBeforeRotation,
        Rotation,
        StillAfterMove,
        LeavingPosition,
    };

    void begin();
    // What is waited for once the device is in a position.
    DetectionState stateInPosition() const;
    bool holdPassed(double t) const;
    void controlMinimal(double t);
    void waitForStillness(double t);
    void waitForRotation(double t);
    void waitForMoveEnd(double t);
    void waitForMove(double t);

    // The gyroscope, or else the magnetometer, or null.
    InertialSensor* secondIndicator() const;
    bool allIndicatorsStill();
    bool rotationSeen();
    bool movedFromReference();
    void markStageEnd(double t);
    void finalizeSegments();
    double extensionOf(double stageEnd) const;
    bool startsWithPosition() const;

    std::shared_ptr<InertialSensor> accelerometerIndicator;
    std::shared_ptr<InertialSensor> gyroscopeIndicator;
    std::shared_ptr<InertialSensor> magnetometerIndicator;
    MotionStages stages;
    DetectionState detectionState = DetectionState::StillBeforeRotation;
    double lastEventTime = 0.0;
    double extraHoldTime = 100.0;
    double lastRotationPoll = 0.0;
    bool firstControlCall = true;
    std::uint64_t rotationPollPeriod = 1;
};

}  // namespace tavocal
