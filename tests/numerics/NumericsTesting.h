#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "base/Failures.h"
#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal::test {

// Double rounding: the largest relative error of one operation is half of this.
constexpr double kEpsilon = 2.220446049250313e-16;

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

// The rotation by norm(v) radians about v, by Rodrigues' formula.
Matrix rotationMatrix(const Vector& v);

// The largest absolute difference of two elements; infinite if the sizes differ or a NaN is among
// them.
double maxDifference(const Vector& a, const Vector& b);
double maxDifference(const Matrix& a, const Matrix& b);

// The largest absolute row sum.
double infinityNorm(const Matrix& a);

// what() of the MathException that `operation` throws; "no exception" if it doesn't.
template <typename Operation>
std::string mathError(Operation operation) {
    try {
        operation();
    } catch (const MathException& error) {
        return error.what();
    }
    return "no exception";
}

}  // namespace tavocal::test
