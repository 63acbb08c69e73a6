#include "numerics/Rotations.h"

#include "numerics/NumericsTesting.h"
#include "support/Angles.h"

namespace tavocal::test {

TEST(RotationsTest, VectorOfARotationMatrixIsItsAxisTimesItsAngle) {
    forEachSeed([](RandomNumbers& random) {
        const Vector axis = random.unitVector();
        for (const double angle : {1e-4, 1e-3, 0.1, 1.0, 2.0, 3.0, kPi - 1e-3}) {
            // acos turns the rounding of the trace into 1 / sin(angle) as much; near the half turn
            // the sine itself, a difference of near elements, is off by as much again.
            const double sine = std::sin(angle);
            EXPECT_LE(maxDifference(rotationVector(rotationMatrix(axis * angle)), axis * angle),
                      10 * kEpsilon * (1.0 + angle / sine) / sine);
        }
    });
    // The antisymmetric part is twice the sine of the angle: nothing is told from below 1e-4.
    EXPECT_EQ(rotationVector(rotationMatrix({0.0, 4.9e-5, 0.0})), Vector(3));
    EXPECT_NEAR(rotationVector(rotationMatrix({0.0, 5.1e-5, 0.0}))[1], 5.1e-5, 1e-10);
}

TEST(RotationsTest, HalfTurnsNameTheRowOfTheLargestElement) {
    const Matrix aboutXAndZ(3, 3, {-0.28, 0.0, 0.96, 0.0, -1.0, 0.0, 0.96, 0.0, 0.28});
    EXPECT_EQ(rotationVector(diagonal({1.0, -1.0, -1.0})), (Vector{kPi / 2, 0.0, 0.0}));
    EXPECT_EQ(rotationVector(diagonal({-1.0, -1.0, 1.0})), (Vector{kPi / 2, 0.0, 0.0}));
    EXPECT_EQ(rotationVector(aboutXAndZ), (Vector{0.0, kPi / 2, 0.0}));
    // What is nearer to no turn than 1e-4 in the trace is none.
    EXPECT_EQ(rotationVector(diagonal({1.0, 1.0, 1.000099})), Vector(3));
    EXPECT_EQ(rotationVector(diagonal({1.0, 1.0, 1.000101})), (Vector{0.0, 0.0, kPi / 2}));
    // A trace beyond 3 counts as 3 with its sign, whose arc has a sine of 0 or doesn't exist.
    for (const double trace : {3.3, -3.3, kNotANumber}) {
        Matrix stretched = diagonal(ones3() * (trace / 3.0));
        stretched[1][0] = 1e-3;
        EXPECT_TRUE(std::isnan(rotationVector(stretched)[0])) << trace;
    }
}

TEST(RotationsTest, FirstOrderTurnIsARotationNearTheExactOne) {
    forEachSeed([](RandomNumbers& random) {
        const Matrix start = rotationMatrix(random.vector(3, 3.0));
        for (const double step : {0.0, 1e-8, 1e-5, 1e-3, 1e-2, 0.3}) {
            const Vector turn = random.unitVector() * step;
            const Matrix turned = rotateFirstOrder(start, turn);
            EXPECT_LE(maxDifference(turned * transpose(turned), identity(3)),
                      0.5 * std::pow(step, 4) + 12 * kEpsilon);
            EXPECT_LE(maxDifference(turned, start * rotationMatrix(turn)),
                      step * step + 10 * kEpsilon);
        }
    });
}

}  // namespace tavocal::test
