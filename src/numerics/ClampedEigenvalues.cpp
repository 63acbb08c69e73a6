#include "numerics/ClampedEigenvalues.h"

#include <cmath>

#include "base/Failures.h"

namespace tavocal {

namespace {

constexpr double kAsymmetryLimit = 1e-07;
constexpr double kThirdOfPi = 1.0471975511965976;
constexpr double kTwoThirdsOfPi = 2.0943951023931953;

double square(double x) {
    return x * x;
}

void requireSymmetric(const Matrix& a) {
    require3x3(a);
    const double asymmetry =
        square(a[0][1] - a[1][0]) + square(a[0][2] - a[2][0]) + square(a[1][2] - a[2][1]);
    if (asymmetry > kAsymmetryLimit) {
        throw MathException("Matrix is not symmetric");
    }
}

// A third of the angle whose cosine is r.
double thirdOfAngle(double r) {
    if (r <= -1.0) {
        return kThirdOfPi;
    }
    return r >= 1.0 ? 0.0 : std::acos(r) / 3.0;
}

}  // namespace

Vector clampedEigenvalues(const Matrix& a) {
    requireSymmetric(a);
    const double p1 = square(a[0][1]) + square(a[0][2]) + square(a[1][2]);
    if (p1 == 0.0) {
        return {a[0][0], a[1][1], a[2][2]};
    }
    const double q = trace(a) / 3.0;
    const double p = std::sqrt(
        (square(a[0][0] - q) + square(a[1][1] - q) + square(a[2][2] - q) + 2.0 * p1) / 6.0);
    const Matrix b = (a - identity(3) * q) / p;
    const double phi = thirdOfAngle(determinant(b) / 2.0);
    const double smallest = q + 2.0 * p * std::cos(phi + kTwoThirdsOfPi);
    const double largest = q + 2.0 * p * std::cos(phi);
    return {smallest, 3.0 * q - smallest - largest, largest};
}

}  // namespace tavocal
