#pragma once

#include <vector>

#include "numerics/Sample.h"
#include "numerics/Vector.h"

namespace tavocal {

// The piecewise linear function through (xs[i], ys[i]) at x. At and beyond the ends it is the end
// value, never an extrapolation. NaN for an empty table and for an x of NaN within a longer one.
// REQUIRES: ascending xs, as long as ys; the surplus of the longer list is ignored, and the result
// for other xs is some number.
double interpolate(const std::vector<double>& xs, const std::vector<double>& ys, double x);

// The three axes of `samples`, in time order, looked up at the timestamp of each of `times`: one
// vector of 3 for each, in the order of `times`. An axis that a sample lacks counts as NaN.
std::vector<Vector> resampleAt(const std::vector<Sample>& samples,
                               const std::vector<Sample>& times);

}  // namespace tavocal
