#pragma once

#include <cstddef>

namespace tavocal::simulator {

// A vector of the plain three-dimensional space.
struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    // REQUIRES: index below 3.
    double operator[](std::size_t index) const { return index == 0 ? x : index == 1 ? y : z; }
    double& operator[](std::size_t index) { return index == 0 ? x : index == 1 ? y : z; }

    bool operator==(const Vec3&) const = default;
};

Vec3 operator+(const Vec3& a, const Vec3& b);
Vec3 operator-(const Vec3& a, const Vec3& b);
Vec3 operator-(const Vec3& a);
Vec3 operator*(const Vec3& a, double factor);
Vec3 operator*(double factor, const Vec3& a);
Vec3& operator+=(Vec3& a, const Vec3& b);

double dot(const Vec3& a, const Vec3& b);
Vec3 cross(const Vec3& a, const Vec3& b);
double norm(const Vec3& a);

constexpr double kPi = 3.14159265358979323846;
constexpr double kRadiansPerDegree = kPi / 180.0;

}  // namespace tavocal::simulator
