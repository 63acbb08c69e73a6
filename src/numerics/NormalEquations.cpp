#include "numerics/NormalEquations.h"

#include "numerics/MatrixInverse.h"

namespace tavocal {

NormalEquations::NormalEquations(int unknowns) : upper(unknowns, unknowns), projections(unknowns) {}

void NormalEquations::add(const Vector& row, double value) {
    assert(row.size() == projections.size());
    for (int i = 0; i < projections.size(); ++i) {
        for (int j = i; j < projections.size(); ++j) {
            upper[i][j] += row[i] * row[j];
        }
        projections[i] += row[i] * value;
    }
}

Matrix NormalEquations::gram() const {
    Matrix result = upper;
    for (int i = 0; i < result.rows(); ++i) {
        for (int j = 0; j < i; ++j) {
            result[i][j] = upper[j][i];
        }
    }
    return result;
}

Vector NormalEquations::solve() const {
    return inverse(gram()) * projections;
}

}  // namespace tavocal
