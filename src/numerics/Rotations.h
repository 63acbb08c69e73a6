#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

// Axis times angle of a rotation matrix, in radians. A half turn, where the axis can't be read
// from the matrix's antisymmetric part, gives half of pi in the one element that belongs to the
// row of the largest matrix element. A NaN in the matrix gives NaNs. Throws MathException
// "Matrix is not 3x3".
Vector rotationVector(const Matrix& r);

// The rotation matrix `r` turned by the small rotation vector `w` (radians, to first order) and
// made orthonormal again. Rows r0 and r1 become r - w x r; so a turn of a device by w turns the
// matrix that brings its readings back into the frame of the start. Throws MathException unless
// `r` is 3 by 3 and `w` has 3 elements.
Matrix rotateFirstOrder(const Matrix& r, const Vector& w);

}  // namespace tavocal
