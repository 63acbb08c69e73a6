#pragma once

#include <vector>

#include "numerics/Sample.h"
#include "sensors/model/SampleWindows.h"

// Whether a device is at rest, judged on a window of samples. REQUIRES as SampleWindows.h.
namespace tavocal {

struct StillnessLimits {
    double stillWindow = 1000.0;   // milliseconds
    double stillFloor = 0.0;       // a limit is never tightened below this
    double stillStdLimit = 0.0;    // largest standard deviation of an axis in a still window
    double stillRangeLimit = 0.0;  // largest range of an axis in a still window
};

// The samples of the newest `window` milliseconds. REQUIRES: there are samples.
IndexWindow lastWindow(const std::vector<Sample>& samples, double window);

// The last window is within the limits. In the first stage the limits are first lowered to 1.5
// times what the window shows, for the rest of the run. No samples: false.
bool isStill(const std::vector<Sample>& samples, StillnessLimits& limits, bool firstStage);

// For how long, in milliseconds and steps of 100, windows after the one from `t` stay as quiet as
// 1.5 times that one. 0.0 if it holds fewer than 3 samples.
double stillExtension(const std::vector<Sample>& samples, double window, double t);

}  // namespace tavocal
