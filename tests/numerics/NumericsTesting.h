#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "base/Failures.h"
#include "numerics/Matrix.h"
#include "support/MessageOf.h"

namespace tavocal::test {

// Double rounding: the largest relative error of one operation is half of this.
constexpr double kEpsilon = 2.220446049250313e-16;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A law of numbers holds at each of these.
constexpr double kScales[] = {1e-8, 1.0, 1e8};

// Numbers, vectors and matrices that depend on the seed alone.
class RandomNumbers {
  public:
    explicit RandomNumbers(std::uint64_t seed) : engine_(seed) {}

    // Evenly spread over [low, high).
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1p-53;
    }

    Vector vector(int size, double magnitude = 1.0) {
        Vector result(size);
        for (double& x : result) {
            x = between(-magnitude, magnitude);
        }
        return result;
    }

    Matrix matrix(int rows, int cols, double magnitude = 1.0) {
        Matrix result(rows, cols);
        for (int r = 0; r < rows; ++r) {
            result.setRow(r, vector(cols, magnitude));
        }
        return result;
    }

    Vector unitVector() { return normalized(vector(3)); }

  private:
    std::mt19937_64 engine_;
};

// check(RandomNumbers&) for the seeds 1 to 10, the one of a failing check being told.
template <typename Check>
void forEachSeed(Check check) {
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomNumbers random(seed);
        check(random);
    }
}

// The rotation by norm(v) radians about v, by Rodrigues' formula.
inline Matrix rotationMatrix(const Vector& v) {
    const double angle = norm(v);
    if (angle == 0.0) {
        return identity(3);
    }
    const Vector k = normalized(v);
    const Matrix cross(3, 3, {0.0, -k[2], k[1], k[2], 0.0, -k[0], -k[1], k[0], 0.0});
    // 1 - cos(angle) = 2 sin(angle / 2)^2, which loses nothing at small angles.
    const double half = std::sin(angle / 2);
    return identity(3) - cross * -std::sin(angle) - cross * cross * (-2.0 * half * half);
}

// The largest absolute difference of two elements; infinite if the sizes differ or a NaN is among
// them.
inline double maxDifference(const Vector& a, const Vector& b) {
    const bool comparable = a.size() == b.size() && !std::isnan(sum(a - b));
    return comparable ? largestMagnitude(a - b) : kInfinity;
}

inline double maxDifference(const Matrix& a, const Matrix& b) {
    return a.rows() == b.rows() ? maxDifference(flattened(a), flattened(b)) : kInfinity;
}

// Why the numerics refuse `operation`.
template <typename Operation>
std::string mathError(Operation operation) {
    return messageOf<MathException>(operation);
}

}  // namespace tavocal::test
