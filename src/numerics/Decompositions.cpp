#include "numerics/Decompositions.h"

#include <algorithm>
#include <cmath>

#include "numerics/MatrixInverse.h"
#include "numerics/Rotations.h"
#include "numerics/Statistics.h"

namespace tavocal {

namespace {

constexpr double kThird = 0.3333333333333333;

// The left singular vectors: the eigenvectors of `square` = A * transpose(A), as columns.
Matrix leftVectors(const Matrix& square, const Vector& eigenvalues) {
    if (isDiagonal(square)) {
        return identity(3);
    }
    Matrix left(3, 3);
    for (int i = 0; i < 3; ++i) {
        left.setColumn(i, symmetricEigenvector(square, eigenvalues[i]));
    }
    return left;
}

// 1 / sqrt(e) on the diagonal, 0.0 for an eigenvalue that isn't positive.
Matrix inverseRoots(const Vector& eigenvalues) {
    Matrix result(3, 3);
    for (int i = 0; i < 3; ++i) {
        result[i][i] = eigenvalues[i] > 0.0 ? 1.0 / std::sqrt(eigenvalues[i]) : 0.0;
    }
    return result;
}

}  // namespace

Vector symmetricEigenvalues(const Matrix& a) {
    require3x3(a);
    if (isDiagonal(a)) {
        return {a[0][0], a[1][1], a[2][2]};
    }
    const double q = trace(a) / 3.0;
    const Matrix b = a - identity(3) * q;
    const double p = std::sqrt(trace(b * b) / 6.0);
    const double angle = std::acos(determinant(b / p) * 0.5) * kThird;
    Vector e(3);
    for (int k = 0; k < 3; ++k) {
        e[k] = q + 2.0 * p * std::cos(angle + 2.0 * k * kPi / 3.0);
    }
    std::sort(e.begin(), e.end(), ordersBefore);
    return e;
}

Vector symmetricEigenvector(const Matrix& a, double e) {
    require3x3(a);
    const Matrix d = inverse(Matrix(2, 2, {a[1][1] - e, a[1][2], a[2][1], a[2][2] - e}));
    const double y = -(a[0][1] * d[0][0] + a[0][2] * d[1][0]);
    const double z = -(a[0][1] * d[0][1] + a[0][2] * d[1][1]);
    return Vector{1.0, y, z} / std::sqrt(y * y + z * z + 1.0);
}

SvdResult svd(const Matrix& a) {
    if (!is3x3(a)) {
        return {Matrix(a.rows(), a.rows()), Matrix(a.cols(), a.cols()), Matrix(a.rows(), a.cols())};
    }
    const Matrix square = a * transpose(a);
    const Vector eigenvalues = symmetricEigenvalues(square);
    SvdResult result;
    result.left = leftVectors(square, eigenvalues);
    result.right = transpose(a) * result.left * inverseRoots(eigenvalues);
    result.singular = diagonal(sqrtValues(eigenvalues));
    return result;
}

}  // namespace tavocal
