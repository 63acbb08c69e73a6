#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "base/Failures.h"
#include "numerics/Matrix.h"
#include "numerics/Vector.h"
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
    double between(double low, double high);
    Vector vector(int size, double magnitude = 1.0);
    Matrix matrix(int rows, int cols, double magnitude = 1.0);
    Vector unitVector();

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
Matrix rotationMatrix(const Vector& v);

// The largest absolute difference of two elements; infinite if the sizes differ or a NaN is among
// them.
double maxDifference(const Vector& a, const Vector& b);
double maxDifference(const Matrix& a, const Matrix& b);

// what() of the MathException that `operation` throws; "no exception" if it doesn't.
template <typename Operation>
std::string mathError(Operation operation) {
    const std::string message = messageOf<MathException>(operation);
    return message == kNoFailure ? "no exception" : message;
}

}  // namespace tavocal::test
