#pragma once

#include <cstddef>
#include <vector>

#include "numerics/Sample.h"
#include "sensors/model/SampleWindows.h"

namespace tavocal {

// Finds windows of samples by time while samples come in, each in logarithmic time. A firmware's
// clock may jump, stand or be set back: timestamps may have any gaps, repeat and fall.
class BufferRanges {
  public:
    // `samples` must outlive this object; samples may only be added to it.
    explicit BufferRanges(const std::vector<Sample>& samples);

    // The newest sample at or before `t` (the first sample if all are later) to the newest at or
    // before `t + window`. Throws CalibrationException "Failed to find buffer range. Inner error"
    // if there is no such sample.
    IndexWindow find(double t, double window);
    // The time, itself excluded, up to which `index` stays the newest sample at or before it.
    double heldBelow(int index) const;

  private:
    void follow();
    int newestNotAbove(double time) const;
    double timeOf(int index) const;

    const std::vector<Sample>& watchedSamples;
    std::vector<int> rising;  // the samples behind which there is no earlier one
    std::size_t followed = 0;
};

}  // namespace tavocal
