#include "simulator/maths/Mat3.h"

namespace tavocal::simulator {

Mat3 diagonal(double x, double y, double z) {
    return {{Vec3{x, 0.0, 0.0}, Vec3{0.0, y, 0.0}, Vec3{0.0, 0.0, z}}};
}

Mat3 identity3() {
    return diagonal(1.0, 1.0, 1.0);
}

Vec3 operator*(const Mat3& m, const Vec3& v) {
    return {dot(m.rows[0], v), dot(m.rows[1], v), dot(m.rows[2], v)};
}

Mat3 operator*(const Mat3& a, const Mat3& b) {
    const Mat3 columns = transposed(b);
    return transposed({{a * columns.rows[0], a * columns.rows[1], a * columns.rows[2]}});
}

Mat3 transposed(const Mat3& m) {
    const auto& [a, b, c] = m.rows;
    return {{Vec3{a.x, b.x, c.x}, Vec3{a.y, b.y, c.y}, Vec3{a.z, b.z, c.z}}};
}

double determinant(const Mat3& m) {
    return dot(m.rows[0], cross(m.rows[1], m.rows[2]));
}

Mat3 inverse(const Mat3& m) {
    const auto& [a, b, c] = m.rows;
    const double factor = 1.0 / determinant(m);
    return transposed({{cross(b, c) * factor, cross(c, a) * factor, cross(a, b) * factor}});
}

}  // namespace tavocal::simulator
