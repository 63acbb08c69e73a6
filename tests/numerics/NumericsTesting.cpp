#include "numerics/NumericsTesting.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tavocal::test {

namespace {

double maxDifference(const double* a, const double* b, int count) {
    double largest = 0.0;
    for (int i = 0; i < count; ++i) {
        const double difference = std::fabs(a[i] - b[i]);
        if (!(difference <= largest)) {
            largest = std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
        }
    }
    return largest;
}

}  // namespace

double RandomNumbers::between(double low, double high) {
    const double unit = static_cast<double>(engine_() >> 11) * 0x1p-53;
    return low + (high - low) * unit;
}

Vector RandomNumbers::vector(int size, double magnitude) {
    Vector result(size);
    for (double& x : result) {
        x = between(-magnitude, magnitude);
    }
    return result;
}

Matrix RandomNumbers::matrix(int rows, int cols, double magnitude) {
    Matrix result(rows, cols);
    for (int r = 0; r < rows; ++r) {
        result.setRow(r, vector(cols, magnitude));
    }
    return result;
}

Vector RandomNumbers::unitVector() {
    Vector v = vector(3);
    while (norm(v) < 0.1) {
        v = vector(3);
    }
    return normalized(v);
}

Matrix rotationMatrix(const Vector& v) {
    const double angle = norm(v);
    Matrix result = identity(3);
    if (angle == 0.0) {
        return result;
    }
    const Vector k = normalized(v);
    const Matrix cross(3, 3, {0.0, -k[2], k[1], k[2], 0.0, -k[0], -k[1], k[0], 0.0});
    const Matrix square = cross * cross;
    const double half = std::sin(angle / 2);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            // 1 - cos(angle) = 2 sin(angle / 2)^2, which loses nothing at small angles.
            result[r][c] += std::sin(angle) * cross[r][c] + 2.0 * half * half * square[r][c];
        }
    }
    return result;
}

double maxDifference(const Vector& a, const Vector& b) {
    return a.size() == b.size() ? maxDifference(a.data(), b.data(), a.size())
                                : std::numeric_limits<double>::infinity();
}

double maxDifference(const Matrix& a, const Matrix& b) {
    return a.rows() == b.rows() && a.cols() == b.cols()
               ? maxDifference(a.data(), b.data(), a.rows() * a.cols())
               : std::numeric_limits<double>::infinity();
}

double infinityNorm(const Matrix& a) {
    double largest = 0.0;
    for (int r = 0; r < a.rows(); ++r) {
        largest = std::max(largest, sum(absValues(row(a, r))));
    }
    return largest;
}

}  // namespace tavocal::test
