#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

// The eigenvalues of a symmetric 3 by 3 matrix by the trigonometric solution of its characteristic
// polynomial (O. K. Smith, Comm. ACM 4, 168, 1961): ascending, but those of a matrix without any
// element off the diagonal stand in the order of the diagonal. Unlike symmetricEigenvalues this
// form clamps the cosine of the solution, so that rounding never makes a NaN of a finite matrix.
//
// Throws MathException "Matrix is not 3x3", and "Matrix is not symmetric" if the squared
// differences of the mirrored elements add up to more than 1e-07.
Vector clampedEigenvalues(const Matrix& a);

}  // namespace tavocal
