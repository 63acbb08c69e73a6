#include "numerics/Rotations.h"

#include <cmath>

namespace tavocal {

namespace {

// Below this the antisymmetric part tells nothing about the axis.
constexpr double kSmallest = 0.0001;

}  // namespace

Vector rotationVector(const Matrix& r) {
    require3x3(r);
    double t = trace(r);
    const Vector w{r[2][1] - r[1][2], r[0][2] - r[2][0], r[1][0] - r[0][1]};
    if (!(norm(w) < kSmallest) || std::isnan(t)) {
        if (std::fabs(t) > 3.0) {
            t = std::copysign(3.0, t);
        }
        const double angle = std::acos((t - 1.0) * 0.5);
        return w * (angle / (std::sin(angle) * 2.0));
    }
    Vector result(3);
    if (std::fabs(t - 3.0) >= kSmallest) {
        result[flatIndexOfAbsoluteMax(r) / 3] = kHalfPi;
    }
    return result;
}

Matrix rotateFirstOrder(const Matrix& r, const Vector& w) {
    require3x3(r);
    const Vector start0 = row(r, 0);
    const Vector start1 = row(r, 1);
    const Vector r0 = start0 - vector3CrossProduct(w, start0);
    const Vector turned1 = start1 - vector3CrossProduct(w, start1);
    const Vector r1 = turned1 - r0 * dot(r0, turned1);
    const Vector r2 = vector3CrossProduct(r0, r1);
    return Matrix(std::vector<Vector>{normalized(r0), normalized(r1), normalized(r2)});
}

}  // namespace tavocal
