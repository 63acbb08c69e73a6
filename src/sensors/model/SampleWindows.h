#pragma once

#include <vector>

#include "numerics/Sample.h"

// Samples by index and by time. Index windows here are inclusive of both ends, unlike stages. The
// clock of a firmware may jump, stand or be set back: timestamps may have any gaps, repeat and
// fall. REQUIRES: each sample has three values.
namespace tavocal {

struct IndexWindow {
    int first = 0;
    int last = 0;
};

// The index of the first sample whose timestamp is above `time`; the sample count if there is none.
int firstIndexAbove(const std::vector<Sample>& samples, double time);

// Milliseconds from the sample before `index` to that sample; 0.0 where one of them doesn't exist.
double intervalBefore(const std::vector<Sample>& samples, int index);

// The largest value of an axis less the smallest, over a window that lies inside the samples. NaN
// if a value is not finite.
double finiteAxisRange(const std::vector<Sample>& samples, IndexWindow window, int axis);

}  // namespace tavocal
