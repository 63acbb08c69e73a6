#pragma once

#include <vector>

#include "numerics/Sample.h"
#include "sensors/inertial/BufferRanges.h"
#include "sensors/inertial/WindowSpread.h"

namespace tavocal {

struct StillnessLimits {
    double stillWindow = 1000.0;   // milliseconds
    double stillFloor = 0.0;       // a limit is never tightened below this
    double stillStdLimit = 0.0;    // largest standard deviation of an axis in a still window
    double stillRangeLimit = 0.0;  // largest range of an axis in a still window
};

// Whether a device is at rest, judged on windows of its samples, each of which has three values.
// The work depends on the number of samples alone, never on the time that they tell of.
class Stillness : public StillnessLimits {
  public:
    // `samples` must outlive this object; samples may only be added to it.
    explicit Stillness(const std::vector<Sample>& samples, const StillnessLimits& limits = {});

    // The samples of the newest `stillWindow` milliseconds. REQUIRES: there are samples.
    IndexWindow lastWindow();
    // The last window is within the limits. In the first stage the limits are first lowered to 1.5
    // times what the window shows, for the rest of the run. No samples: false.
    bool isStill(bool firstStage);
    // For how long, in milliseconds and steps of 100, windows after the one from `t` stay as quiet
    // as 1.5 times that one. 0.0 if it holds fewer than 3 samples.
    double stillExtension(double t);

  private:
    const std::vector<Sample>& watchedSamples;
    BufferRanges ranges;
    WindowSpread newest;
};

}  // namespace tavocal
