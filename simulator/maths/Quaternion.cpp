#include "simulator/maths/Quaternion.h"

#include <cmath>

namespace tavocal::simulator {

Quaternion fromRotationVector(const Vec3& vector) {
    const double angle = norm(vector);
    // sin(a/2)/a by its series where the quotient would lose digits or divide by zero.
    const double factor = angle < 1e-4 ? 0.5 - angle * angle / 48.0 : std::sin(0.5 * angle) / angle;
    return {std::cos(0.5 * angle), vector.x * factor, vector.y * factor, vector.z * factor};
}

Vec3 toRotationVector(const Quaternion& q) {
    const Vec3 axis = q.w < 0.0 ? Vec3{-q.x, -q.y, -q.z} : Vec3{q.x, q.y, q.z};
    const double sine = norm(axis);
    const double factor = sine < 1e-12 ? 2.0 : 2.0 * std::atan2(sine, std::abs(q.w)) / sine;
    return axis * factor;
}

Quaternion operator*(const Quaternion& a, const Quaternion& b) {
    return {a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z,
            a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
            a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
}

Quaternion conjugate(const Quaternion& q) {
    return {q.w, -q.x, -q.y, -q.z};
}

Vec3 rotate(const Quaternion& q, const Vec3& v) {
    const Vec3 axis{q.x, q.y, q.z};
    const Vec3 twice = 2.0 * cross(axis, v);
    return v + q.w * twice + cross(axis, twice);
}

}  // namespace tavocal::simulator
