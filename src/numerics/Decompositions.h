#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

// Closed forms for 3 by 3 matrices, with no iteration.

// A = left * singular * transpose(right). Neither the order of the singular values nor the signs
// of the columns are normalised: the values ascend, but keep the order of the diagonal if
// A * transpose(A) is diagonal. left * transpose(right) is the rotation nearest to A.
struct SvdResult {
    Matrix left;
    Matrix right;
    Matrix singular;
};

// The eigenvalues of a symmetric matrix by the trigonometric solution of its characteristic
// polynomial: ascending, but in the order of the diagonal if isDiagonal. NaN where rounding
// carries the cosine of that solution beyond 1. Throws MathException "Matrix is not 3x3".
Vector symmetricEigenvalues(const Matrix& a);

// The unit eigenvector of the eigenvalue `e` of a symmetric matrix, with a positive first element.
// An eigenvector whose first element is 0 is out of its reach: the result is then not finite, or
// no eigenvector. Throws MathException "Matrix is not 3x3".
Vector symmetricEigenvector(const Matrix& a, double e);

// The singular value decomposition. A matrix that isn't 3 by 3 gives three zero matrices, of the
// sizes that the product asks for. The limits of symmetricEigenvector hold for A * transpose(A).
SvdResult svd(const Matrix& a);

}  // namespace tavocal
