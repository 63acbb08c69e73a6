#pragma once

#include "numerics/Vector.h"

namespace tavocal {

// A quaternion x i + y j + z k + w; a unit quaternion stands for a rotation. Starts as the
// identity.
struct Quaternion {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;

    bool operator==(const Quaternion&) const = default;
};

// The rotation about the axis `v` by norm(v) radians. Throws MathException
// "Expected vector length was 3".
Quaternion quaternionFromRotationVector(const Vector& v);

// The Hamilton product: the rotation q2 followed by q1.
Quaternion operator*(const Quaternion& q1, const Quaternion& q2);

// `v` turned by the unit quaternion `q`. Throws MathException unless `v` has 3 elements.
Vector rotateByQuaternion(const Quaternion& q, const Vector& v);

}  // namespace tavocal
