#include "numerics/Quaternion.h"

#include <cmath>

#include "base/Failures.h"

namespace tavocal {

Quaternion quaternionFromRotationVector(const Vector& v) {
    if (v.size() != 3) {
        throw MathException("Expected vector length was 3");
    }
    const double n = norm(v);
    if (n == 0.0) {
        return {};
    }
    const Vector u = v * std::sin(n * 0.5) / n;
    return {u[0], u[1], u[2], std::cos(n * 0.5)};
}

Quaternion operator*(const Quaternion& q1, const Quaternion& q2) {
    return {q1.x * q2.w + q1.w * q2.x + q1.y * q2.z - q1.z * q2.y,
            q1.w * q2.y - q1.x * q2.z + q1.y * q2.w + q1.z * q2.x,
            q1.w * q2.z + q1.x * q2.y - q1.y * q2.x + q1.z * q2.w,
            q1.w * q2.w - q1.x * q2.x - q1.y * q2.y - q1.z * q2.z};
}

Vector rotateByQuaternion(const Quaternion& q, const Vector& v) {
    const Vector u{q.x, q.y, q.z};
    const Vector t = vector3CrossProduct(u, v) * 2.0;
    return v + t * q.w + vector3CrossProduct(u, t);
}

}  // namespace tavocal
