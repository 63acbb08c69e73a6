#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

// The signed permutation of the elements of largest magnitude in each row of a 3 by 3 matrix.
// Nothing keeps two rows from picking the same column.
Matrix calcAxisMapping(const Matrix& matrix);

// So far from the expected direction, 45 degrees or more, that a poor scale can't explain it.
bool pointsAlongWrongAxis(const Vector& measured, const Vector& expected);

}  // namespace tavocal
