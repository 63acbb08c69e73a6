#pragma once

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

// A rotation as a unit quaternion, w first, right-handed. As an attitude it takes a vector of the
// device's frame to the world's.
struct Quaternion {
    double w = 1.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// The rotation about the direction of `vector` by its length in radians, counter-clockwise when
// the vector points at the viewer.
Quaternion fromRotationVector(const Vec3& vector);
// The shortest rotation vector, at most pi long.
Vec3 toRotationVector(const Quaternion& q);

// First `b`, then `a`, in fixed axes; or first `a`, then `b` in the axes that `a` has turned.
Quaternion operator*(const Quaternion& a, const Quaternion& b);
Quaternion conjugate(const Quaternion& q);
Vec3 rotate(const Quaternion& q, const Vec3& v);

}  // namespace tavocal::simulator
