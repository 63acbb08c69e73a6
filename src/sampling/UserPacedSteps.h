#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavocal {

class Sensor;

// The steps of a run whose steps end by the operator's key: three rotations and a walk. At each key
// the movement that it ends is checked, so that a bad result means a bad place and not a bad
// movement. Main thread, while samples flow.
class UserPacedSteps {
  public:
    // `storedSamples` is how many samples of the indicator have been stored up to the key.
    // `threeRotations`: the step closes the three rotations. Throws CalibrationException if a
    // movement was not made as told.
    void finish(Sensor& indicator, std::size_t storedSamples, bool threeRotations);

  private:
    void checkMovement(Sensor& indicator) const;

    std::vector<std::uint32_t> stepBoundaries;  // stored samples at each key
};

}  // namespace tavocal
