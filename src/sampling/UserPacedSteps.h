#pragma once

#include <cstdint>
#include <vector>

namespace tavocal {

class Sensor;
struct SamplingState;

// The steps of a run whose steps end by the operator's key: three rotations and a walk. At each key
// the movement that it ends is checked, so that a bad result means a bad place and not a bad
// movement. Main thread, while samples flow: dataMutex is held only to count the stored samples.
class UserPacedSteps {
  public:
    // `state` must outlive this object.
    explicit UserPacedSteps(SamplingState& state);

    // Waits for the key that ends the present step. `threeRotations`: the step closes the three
    // rotations. Throws CalibrationException if the movement was not made as told, or if the stage
    // failed.
    void waitForKey(bool threeRotations);

  private:
    void finish(Sensor& indicator, bool threeRotations);
    void checkMovement(Sensor& indicator) const;

    SamplingState& state;
    std::vector<std::uint32_t> stepBoundaries;  // stored samples of the indicator at each key
};

}  // namespace tavocal
