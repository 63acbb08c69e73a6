#include "numerics/Rotations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::kEpsilon;
using test::mathError;
using test::maxDifference;
using test::RandomNumbers;
using test::rotationMatrix;

constexpr double kPi = 3.141592653589793;

TEST(RotationVector, RoundTripsThroughTheRotationMatrix) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        const Vector axis = RandomNumbers(seed).unitVector();
        for (const double angle : {1e-4, 1e-3, 0.1, 1.0, 2.0, 3.0, kPi - 1e-3}) {
            // acos turns the rounding of the trace into 1 / sin(angle) as much; near the half turn
            // the sine itself, a difference of near elements, is off by as much again.
            const double sine = std::sin(angle);
            const double tolerance = 10 * kEpsilon * (1.0 + angle / sine) / sine;
            EXPECT_LE(maxDifference(rotationVector(rotationMatrix(axis * angle)), axis * angle),
                      tolerance)
                << "seed " << seed << " angle " << angle;
        }
    }
}

TEST(RotationVector, OfKnownTurns) {
    EXPECT_EQ(rotationVector(identity(3)), Vector(3));
    const Matrix quarter(3, 3, {0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0});
    EXPECT_LE(maxDifference(rotationVector(quarter), Vector{0.0, 0.0, kPi / 2}), kEpsilon);
    // The antisymmetric part is twice the sine of the angle: nothing is told from below 1e-4.
    EXPECT_EQ(rotationVector(rotationMatrix({0.0, 4.9e-5, 0.0})), Vector(3));
    EXPECT_NEAR(rotationVector(rotationMatrix({0.0, 5.1e-5, 0.0}))[1], 5.1e-5, 1e-10);
}

TEST(RotationVector, OfHalfTurnsNamesTheRowOfTheLargestElement) {
    EXPECT_EQ(rotationVector(diagonal({1.0, -1.0, -1.0})), (Vector{kPi / 2, 0.0, 0.0}));
    // The first of equals.
    EXPECT_EQ(rotationVector(diagonal({-1.0, -1.0, 1.0})), (Vector{kPi / 2, 0.0, 0.0}));
    const Matrix aboutXZ(3, 3, {-0.28, 0.0, 0.96, 0.0, -1.0, 0.0, 0.96, 0.0, 0.28});
    EXPECT_EQ(rotationVector(aboutXZ), (Vector{0.0, kPi / 2, 0.0}));
    const Matrix aboutXY(3, 3, {-0.28, 0.96, 0.0, 0.96, 0.28, 0.0, 0.0, 0.0, -1.0});
    EXPECT_EQ(rotationVector(aboutXY), (Vector{0.0, 0.0, kPi / 2}));
}

TEST(RotationVector, TraceBeyondThreeCountsAsThree) {
    // A matrix that is no rotation must not push acos out of its range on the upper side.
    Matrix stretched = identity(3) * 1.1;
    stretched[1][0] = 1e-3;
    EXPECT_TRUE(std::isnan(rotationVector(stretched)[0]));  // 0 / sin(0)
    Matrix shrunk = identity(3) * -1.1;
    shrunk[1][0] = 1e-3;
    EXPECT_TRUE(std::isnan(rotationVector(shrunk)[2]));
}

TEST(RotationVector, ANaNAnywhereTravelsOn) {
    for (int i = 0; i < 9; ++i) {
        Matrix r = identity(3);
        r.data()[i] = std::numeric_limits<double>::quiet_NaN();
        EXPECT_TRUE(std::isnan(norm(rotationVector(r)))) << i;
    }
}

TEST(RotateFirstOrder, GivesARotationToFourthOrder) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const Matrix start = rotationMatrix(random.vector(3, 3.0));
        for (const double step : {0.0, 1e-8, 1e-3, 0.3}) {
            const Matrix turned = rotateFirstOrder(start, random.unitVector() * step);
            const double tolerance = 0.5 * std::pow(step, 4) + 12 * kEpsilon;
            EXPECT_LE(maxDifference(turned * transpose(turned), identity(3)), tolerance)
                << "seed " << seed << " step " << step;
            EXPECT_NEAR(determinant(turned), 1.0, tolerance) << "seed " << seed;
        }
    }
}

TEST(RotateFirstOrder, DiffersFromTheExactTurnBySecondOrder) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const Matrix start = rotationMatrix(random.vector(3, 3.0));
        const Vector axis = random.unitVector();
        for (const double step : {1e-8, 1e-5, 1e-3, 1e-2}) {
            const Matrix exact = start * rotationMatrix(axis * step);
            EXPECT_LE(maxDifference(rotateFirstOrder(start, axis * step), exact),
                      step * step + 10 * kEpsilon)
                << "seed " << seed << " step " << step;
        }
    }
}

TEST(Rotations, RefuseOtherSizes) {
    EXPECT_EQ(mathError([] { return rotationVector(identity(2)); }),
              "Math Error: Matrix is not 3x3");
    EXPECT_EQ(mathError([] { return rotateFirstOrder(Matrix(2, 3), Vector(3)); }),
              "Math Error: Matrix is not 3x3");
    EXPECT_NE(mathError([] { return rotateFirstOrder(identity(3), Vector(2)); }), "no exception");
}

}  // namespace
}  // namespace tavocal
