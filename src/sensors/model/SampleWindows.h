#pragma once

#include <vector>

#include "numerics/Sample.h"

// Measures over a window of samples, by index or by time. Index windows here are
// inclusive of both ends, unlike stages. The clock of a firmware may jump, run back or stand, so
// that timestamps may have any gaps, and may fall. REQUIRES: each sample has three values.
namespace tavocal {

struct IndexWindow {
    int first = 0;
    int last = 0;
};

// The index of the first sample whose timestamp is above `time`; the sample count if there is none.
int firstIndexAbove(const std::vector<Sample>& samples, double time);

// Milliseconds from the sample before `index` to that sample; 0.0 where one of them doesn't exist.
double intervalBefore(const std::vector<Sample>& samples, int index);

// The newest sample at or before `t` (the first sample if all are later) to the newest at or before
// `t + window`. Throws CalibrationException "Failed to find buffer range. Inner error" if there is
// no such sample. Made for windows that end near the newest sample, from which it walks back.
IndexWindow findBufferRange(const std::vector<Sample>& samples, double t, double window);

// The same for many windows, each in logarithmic time. REQUIRES: no sample is added meanwhile.
class BufferRanges {
  public:
    explicit BufferRanges(const std::vector<Sample>& samples);

    IndexWindow find(double t, double window) const;
    // Up to which time, itself excluded, `index` stays the newest one at or before it.
    double heldBelow(int index) const;

  private:
    int newestNotAbove(double time) const;

    std::vector<double> earliestFrom;  // the earliest time of a sample and all behind it
};

// The largest value of an axis less the smallest, over a window that lies inside the samples; NaNs
// are passed over. The other gives NaN if a value of the axis is not finite.
double axisRange(const std::vector<Sample>& samples, IndexWindow window, int axis);
double finiteAxisRange(const std::vector<Sample>& samples, IndexWindow window, int axis);

// The largest, over the three axes, of the largest value less the smallest, and of the population
// standard deviations. Both are at least 2.2250738585072014e-308. Both throw CalibrationException
// "invalid buffer range" for a window that is not inside the samples; maxRange of no samples is 0.
double maxRange(const std::vector<Sample>& samples, IndexWindow window);
double maxStd(const std::vector<Sample>& samples, IndexWindow window);

}  // namespace tavocal
