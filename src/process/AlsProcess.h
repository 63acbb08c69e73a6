#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formats/AlsConfig.h"
#include "process/Process.h"
#include "sensors/light/LightLevels.h"

namespace tavocal {

class AmbientLight;

// The script of an ambient light calibration: a series of light levels, each of which is marked in
// lightSegments once the reading has left the level before it and holds still.
//
// In the interactive flow the operator changes the light and types what a light meter shows; no
// sample is stored meanwhile. In the automatic flow a rig changes the light, and the levels come
// from a configuration file, as they do for a replay.
class AlsProcess : public Process {
  public:
    explicit AlsProcess(bool isInteractiveFlow);

    // Throws as loadAlsConfig.
    void loadConfiguration(const std::string& path) override;
    // Asks the operator for the number of stages in the interactive flow. Throws
    // CalibrationException for a number that can't be right.
    void prepare() override;

    // Both throw CalibrationException if the file has no level for currentStep, readUserInput also
    // for a level that breaks the rules of the series.
    std::string getInstructions(bool noEnter) override;
    std::string readUserInput() override;
    bool needsUserInput() override;
    bool isInteractive() const override;

    // REQUIRES: the indicator has just stored `sample`, whose own value is the raw one. Throws
    // SamplingException if the light doesn't change or doesn't get stable in time.
    void CalibrationControl(const Sample& sample) override;
    bool isStageIndicator(const Sensor& sensor) const override;
    std::vector<std::string> requiredIndicatorTypes() const override;
    // Throws CalibrationException for a sensor that is no ambient light sensor; those that
    // addCalibratedSensor gets are passed over.
    bool setStageIndicator(const std::shared_ptr<Sensor>& sensor) override;
    void addCalibratedSensor(const std::shared_ptr<Sensor>& sensor) override;

    // Cuts the buffers of all light sensors at the front to one length, and lets the indicator's
    // segments follow.
    void finishCollection() override;
    void passLevelsToSensor(Sensor& sensor) const override;

  private:
    int configuredLevel() const;
    void lookForChange(double value);
    void watchStability(double value);
    void markStageEnd(int first, int last);

    bool interactive;
    AlsAutoConfig config;
    LightLevels levels;
    std::shared_ptr<AmbientLight> lightIndicator;
    std::vector<std::shared_ptr<AmbientLight>> lightSensors;

    // Of the stage that is being looked for.
    bool lightChangeSeen = false;
    int changeWaitCount = 0;      // samples that showed no change of light
    int windowSampleCount = 0;    // samples since stability is watched
    int unstableWindowCount = 0;  // windows that failed the stability test
};

}  // namespace tavocal
