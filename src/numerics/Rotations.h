#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr double kDegreesPerRadian = 57.29577951308232;

// Axis times angle of a rotation matrix, in radians. At a half turn the antisymmetric part of the
// matrix, which tells the axis, vanishes: the result is then half of pi in the element that has the
// index of the row of the largest matrix element, which need not be the axis. A NaN in the matrix
// gives NaNs. Throws MathException "Matrix is not 3x3".
Vector rotationVector(const Matrix& r);

// The rotation matrix `r` turned by the small rotation vector `w` (radians). Rows 0 and 1 become
// r - w x r, row 1 loses its part along row 0, and row 2 is their cross product; all are brought to
// length 1. The result differs from the exact turn, r times the rotation by w, by the second order
// of w, and from a rotation by the fourth. Throws MathException unless `r` is 3 by 3 and `w` has 3
// elements.
Matrix rotateFirstOrder(const Matrix& r, const Vector& w);

}  // namespace tavocal
