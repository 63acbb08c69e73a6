#pragma once

#include <vector>

#include "numerics/Matrix.h"
#include "numerics/Sample.h"
#include "numerics/Vector.h"

namespace tavocal {

// The ellipsoid that a cloud of readings of a three-axis sensor lies on, and the correction that
// makes a sphere of it: corrected = correction * (reading - center). A value class; all of it in
// the unit of the samples.
//
// Each sample must have three values at least, of which the first three count; a shorter one makes
// every operation throw MathException. Degenerate clouds (all in a plane, fewer than nine distinct
// samples) are not refused: their fields may be non-finite or without meaning.
class Ellipsoid {
  public:
    // The unit sphere around the origin.
    Ellipsoid() = default;

    // A least-squares fit. Corrected samples lie on a sphere of the cloud's mean size, 1 /
    // meanGain, in the sensor's own frame. Throws MathException "The calculated eigen values of the
    // ellipsoid are not correct" for a cloud on another surface.
    explicit Ellipsoid(const std::vector<Sample>& samples);

    // The same fit, but corrected samples lie on a sphere of `radius`, in the frame of the
    // ellipsoid's axes.
    Ellipsoid(const std::vector<Sample>& samples, double radius);

    Vector apply(const Vector& v) const;

    // The mean distance of the corrected samples from a sphere of `radius`. NaN without samples.
    double meanError(const std::vector<Sample>& samples, double radius) const;

    // The centre, in space, of the ellipse that a turn about one axis traces. Puts the two radii
    // into axisGain and leaves the other fields alone. Throws as fitEllipse; fewer than three
    // samples give NaNs.
    Vector circleCenter(const std::vector<Sample>& samples);

    // The centre of an ellipse through 2-vectors. Puts its two radii into axisGain. Throws
    // MathException if the points lie on a parabola or a hyperbola.
    Vector fitEllipse(const std::vector<Vector>& points);

    Vector center{0.0, 0.0, 0.0};
    Vector axisGain{1.0, 1.0, 1.0};         // along each axis; two radii after fitEllipse
    Vector inverseAxisGain{1.0, 1.0, 1.0};  // element by element
    Matrix correction = identity(3);
    Matrix axes = identity(3);  // the ellipsoid's axes as rows, of unit length
    double meanGain = 1.0;      // mean of the reciprocals of the semi-axes
};

}  // namespace tavocal
