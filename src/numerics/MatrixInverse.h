#pragma once

#include "numerics/Matrix.h"

namespace tavocal {

// The closed inverse of a 3 by 3 matrix: its adjugate over its determinant. Throws MathException
// "Matrix is not 3x3" for any other size, and "Failed to invert matrix" for a determinant of
// exactly 0.0. A nearly singular matrix is inverted and gives large elements.
Matrix inverse3(const Matrix& a);

// The inverse of a square matrix by Gauss-Jordan elimination in place with full pivoting. Throws
// MathException "Matrix is not square". Singularity is not tested: it gives non-finite elements.
Matrix inverse(const Matrix& a);

}  // namespace tavocal
