#pragma once

#include <span>
#include <vector>

#include "numerics/Sample.h"
#include "numerics/Vector.h"

// What is computed from a magnetometer's readings before and after the fit of its ellipsoid.
namespace tavocal {

class Ellipsoid;

// Thins samples out until neighbours are further apart than `minDistance`, so that slow and fast
// turns weigh alike and a still stretch gives next to nothing: the first sample, and each later one
// whose values lie strictly further than that from the sample kept last. Throws MathException "The
// buffer is empty".
std::vector<Sample> spreadSamples(const std::vector<Sample>& samples, double minDistance);

// The unit vector, in the frame of the corrected samples, of the axis that a sensor was turned
// about. The field keeps its angle to that axis, so the corrected samples v lie on a cone about it:
// the result points along the least-squares solution x of v . x = -|v|, and so up, wherever the
// field points down, for a turn about a vertical axis. Throws MathException "Failed to invert
// matrix" for samples in a plane through the origin, as far as rounding shows it.
Vector rotationAxis(std::span<const Sample> samples, const Ellipsoid& ellipsoid);

}  // namespace tavocal
