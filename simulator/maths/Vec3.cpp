#include "simulator/maths/Vec3.h"

#include <cmath>

namespace tavocal::simulator {

Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vec3 operator-(const Vec3& a) {
    return {-a.x, -a.y, -a.z};
}

Vec3 operator*(const Vec3& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

Vec3 operator*(double factor, const Vec3& a) {
    return a * factor;
}

Vec3& operator+=(Vec3& a, const Vec3& b) {
    return a = a + b;
}

double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double norm(const Vec3& a) {
    return std::sqrt(dot(a, a));
}

}  // namespace tavocal::simulator
