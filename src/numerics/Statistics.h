#pragma once

#include <vector>

#include "numerics/Sample.h"
#include "numerics/Vector.h"

namespace tavocal {

// A total order for sorting: ascending, -0.0 before 0.0, NaNs behind everything. Plain < must not
// sort what may hold a NaN.
bool ordersBefore(double a, double b);

// The arithmetic mean; 0.0 for the empty list.
double mean(const std::vector<double>& values);

// E[x^2] - mean^2; 0.0 for the empty list. Rounding may make it negative, as it may for equal
// values.
double variance(const std::vector<double>& values);

// The population standard deviation sqrt(E[x^2] - mean^2); 0.0 for the empty list, and where
// rounding makes the difference negative, as it may for equal values.
double stdDev(const std::vector<double>& values);

// The middle value in ascending order, or the mean of the two middle ones of an even number; 0.0
// for the empty list.
double median(std::vector<double> values);

// The median of each axis over the samples first to last, both included. Has as many elements as
// the sample `first`; a sample without some axis is passed over for it. The part of the range that
// lies outside the list is cut off. An empty range gives an empty vector.
Vector medianOfAxes(const std::vector<Sample>& samples, int first, int last);

}  // namespace tavocal
