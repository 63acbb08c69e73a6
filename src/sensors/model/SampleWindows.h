#pragma once

#include <vector>

#include "numerics/Sample.h"

// Measures over a window of samples, by index or by time. Index windows here are
// inclusive of both ends, unlike stages. REQUIRES: timestamps don't fall, and each sample has three
// values.
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
// no such sample.
IndexWindow findBufferRange(const std::vector<Sample>& samples, double t, double window);

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
