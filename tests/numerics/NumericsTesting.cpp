#include "numerics/NumericsTesting.h"

#include <cmath>

namespace tavocal::test {

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
    return normalized(vector(3));
}

Matrix rotationMatrix(const Vector& v) {
    const double angle = norm(v);
    if (angle == 0.0) {
        return identity(3);
    }
    const Vector k = normalized(v);
    const Matrix cross(3, 3, {0.0, -k[2], k[1], k[2], 0.0, -k[0], -k[1], k[0], 0.0});
    // 1 - cos(angle) = 2 sin(angle / 2)^2, which loses nothing at small angles.
    const double half = std::sin(angle / 2);
    return identity(3) - cross * -std::sin(angle) - cross * cross * (-2.0 * half * half);
}

double maxDifference(const Vector& a, const Vector& b) {
    const bool comparable = a.size() == b.size() && !std::isnan(sum(a - b));
    return comparable ? largestMagnitude(a - b) : kInfinity;
}

double maxDifference(const Matrix& a, const Matrix& b) {
    return a.rows() == b.rows() ? maxDifference(flattened(a), flattened(b)) : kInfinity;
}

}  // namespace tavocal::test
