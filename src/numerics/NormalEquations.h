#pragma once

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

// A linear least-squares problem D * x = b that is never held as a whole: the sums that its
// solution needs, transpose(D) * D and transpose(D) * b, grow row by row. Each sum starts at 0.0
// and runs in the order of the rows.
class NormalEquations {
  public:
    explicit NormalEquations(int unknowns);

    // Adds the equation row * x = value. REQUIRES: one element for each unknown.
    void add(const Vector& row, double value);

    // transpose(D) * D
    Matrix gram() const;
    // inverse(gram) * transpose(D) * b. Singularity is not tested: rows that don't determine all
    // unknowns give non-finite or meaningless elements.
    Vector solve() const;

  private:
    Matrix upper;  // the lower triangle stays zero
    Vector projections;
};

}  // namespace tavocal
