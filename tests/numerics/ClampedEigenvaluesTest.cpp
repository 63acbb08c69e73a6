#include "numerics/ClampedEigenvalues.h"

#include <gtest/gtest.h>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::kEpsilon;
using test::mathError;
using test::maxDifference;
using test::RandomNumbers;
using test::rotationMatrix;

TEST(ClampedEigenvalues, FindsTheValuesThatTheMatrixWasMadeOf) {
    // With two equal values rounding carries the cosine of the solution to 1 and beyond.
    const std::vector<Vector> lists = {{-0.5, 1.0, 2.0}, {1.0, 1.0, 2.0}, {-1.0, 2.0, 2.0}};
    for (std::uint64_t seed = 1; seed <= 50; ++seed) {
        RandomNumbers random(seed);
        const Matrix basis = rotationMatrix(random.vector(3, 3.0));
        for (const Vector& values : lists) {
            for (const double scale : {1e-5, 1.0, 1e3}) {
                Matrix a = basis * diagonal(values * scale) * transpose(basis);
                const bool twice = values[0] == values[1] || values[1] == values[2];
                // Near a double value the solution halves the number of digits.
                const double tolerance = (twice ? 1e-7 : 50 * kEpsilon) * scale;
                EXPECT_LE(maxDifference(clampedEigenvalues(a), values * scale), tolerance)
                    << "seed " << seed << " scale " << scale;
            }
        }
    }
}

TEST(ClampedEigenvalues, OnlyAnExactlyDiagonalMatrixKeepsItsOrder) {
    EXPECT_EQ(clampedEigenvalues(diagonal({3.0, -1.0, 2.0})), (Vector{3.0, -1.0, 2.0}));
    Matrix a = diagonal({3.0, -1.0, 2.0});
    a[0][1] = a[1][0] = 1e-12;
    EXPECT_LE(maxDifference(clampedEigenvalues(a), Vector{-1.0, 2.0, 3.0}), 1e-15 * 10);
}

TEST(ClampedEigenvalues, RefusesWhatIsNotSymmetricOrNot3By3) {
    Matrix a = diagonal({3.0, -1.0, 2.0});
    a[2][1] = 3.1e-4;  // its square is below 1e-07
    EXPECT_EQ(mathError([&] { clampedEigenvalues(a); }), "no exception");
    a[2][1] = 3.2e-4;
    EXPECT_EQ(mathError([&] { clampedEigenvalues(a); }), "Math Error: Matrix is not symmetric");
    EXPECT_EQ(mathError([] { clampedEigenvalues(identity(2)); }), "Math Error: Matrix is not 3x3");
}

}  // namespace
}  // namespace tavocal
