#pragma once

#include <memory>
#include <string>
#include <vector>

#include "process/Process.h"

namespace tavocal {

// The script of the magnetic environment test: three turns and a walk, each ended by the operator's
// key. It decides nothing itself; the movements are judged when the key comes.
class PreTestProcess : public Process {
  public:
    PreTestProcess();

    // Also sets, for isThreeRotationsStage, whether the step whose prompt this is closes the turns.
    std::string getInstructions(bool noEnter) override;
    bool needsUserInput() override { return waitForStart; }
    // Waits for the key that starts the run. A closed standard input counts as the key.
    std::string readUserInput() override;
    bool isThreeRotationsStage() const override { return threeRotationsStage; }
    bool isUserPaced() const override { return true; }
    void CalibrationControl(const Sample& /*sample*/) override {}
    bool isStageIndicator(const Sensor& sensor) const override;
    std::vector<std::string> requiredIndicatorTypes() const override;
    bool setStageIndicator(const std::shared_ptr<Sensor>& sensor) override;

  private:
    std::shared_ptr<Sensor> stageIndicator;
    bool waitForStart = true;  // the key that starts the run has not come yet
    bool threeRotationsStage = false;
};

}  // namespace tavocal
