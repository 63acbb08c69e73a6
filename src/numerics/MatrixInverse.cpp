#include "numerics/MatrixInverse.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Failures.h"

namespace tavocal {

namespace {

// The cofactor of element r, c of a 3 by 3 matrix. Taking the two other rows and columns in
// cyclic order gives it its sign, and a cofactor of nothing as 0.0 rather than -0.0.
double cofactor(const Matrix& a, int r, int c) {
    const int r1 = (r + 1) % 3;
    const int r2 = (r + 2) % 3;
    const int c1 = (c + 1) % 3;
    const int c2 = (c + 2) % 3;
    return a[r1][c1] * a[r2][c2] - a[r1][c2] * a[r2][c1];
}

void swapRows(Matrix& m, int i, int j) {
    if (i != j) {
        std::swap_ranges(m[i], m[i] + m.cols(), m[j]);
    }
}

void swapColumns(Matrix& m, int i, int j) {
    if (i != j) {
        for (int r = 0; r < m.rows(); ++r) {
            std::swap(m[r][i], m[r][j]);
        }
    }
}

struct Pivot {
    int row;
    int column;
};

// The place of the largest element of `m` from row and column k on.
Pivot findPivot(const Matrix& m, int k) {
    const int n = m.rows();
    const int flat = flatIndexOfAbsoluteMax(submatrix(m, k, n, k, n));
    return {flat / (n - k) + k, flat % (n - k) + k};
}

// Eliminates column k by the pivot at k, k and puts the column of the inverse into its place.
void eliminate(Matrix& m, int k) {
    const int n = m.rows();
    const double p = 1.0 / m[k][k];
    for (int j = 0; j < n; ++j) {
        m[k][j] *= p;
    }
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            if (i != k && j != k) {
                m[i][j] -= m[k][j] * m[i][k];
            }
        }
    }
    for (int i = 0; i < n; ++i) {
        m[i][k] = -(m[i][k] * p);
    }
    m[k][k] = p;
}

}  // namespace

Matrix inverse3(const Matrix& a) {
    const double d = determinant(a);
    if (d == 0.0) {
        throw MathException("Failed to invert matrix");
    }
    Matrix result(3, 3);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            result[r][c] = cofactor(a, c, r) / d;
        }
    }
    return result;
}

Matrix inverse(const Matrix& a) {
    if (a.rows() != a.cols()) {
        throw MathException("Matrix is not square");
    }
    const int n = a.rows();
    Matrix m = a;
    std::vector<Pivot> pivots;
    pivots.reserve(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k) {
        const Pivot pivot = findPivot(m, k);
        swapRows(m, k, pivot.row);
        swapColumns(m, k, pivot.column);
        eliminate(m, k);
        pivots.push_back(pivot);
    }
    for (int k = n - 1; k >= 0; --k) {
        const Pivot& pivot = pivots[static_cast<std::size_t>(k)];
        swapRows(m, k, pivot.column);
        swapColumns(m, k, pivot.row);
    }
    return m;
}

}  // namespace tavocal
