#pragma once

#include <array>

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

// A 3 by 3 matrix, held as its rows.
struct Mat3 {
    std::array<Vec3, 3> rows;

    bool operator==(const Mat3&) const = default;
};

Mat3 diagonal(double x, double y, double z);
Mat3 identity3();

Vec3 operator*(const Mat3& m, const Vec3& v);
Mat3 operator*(const Mat3& a, const Mat3& b);
Mat3 transposed(const Mat3& m);
double determinant(const Mat3& m);
// REQUIRES: a determinant other than zero.
Mat3 inverse(const Mat3& m);

}  // namespace tavocal::simulator
