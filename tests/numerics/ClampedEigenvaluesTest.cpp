#include "numerics/ClampedEigenvalues.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(ClampedEigenvaluesTest, FindsTheValuesThatTheMatrixWasMadeOf) {
    forEachSeed([&](RandomNumbers& random) {
        const Matrix basis = rotationMatrix(random.vector(3, 3.0));
        for (const double scale : {1e-5, 1.0, 1e3}) {
            // Two equal values carry the cosine of the solution to 1 and beyond, and halve the
            // number of digits.
            for (const Vector& values :
                 {Vector{-0.5, 1.0, 2.0}, {1.0, 1.0, 2.0}, {-1.0, 2.0, 2.0}}) {
                const Matrix a = basis * diagonal(values * scale) * transpose(basis);
                EXPECT_LE(maxDifference(clampedEigenvalues(a), values * scale),
                          (values[0] == -0.5 ? 50 * kEpsilon : 1e-7) * scale);
            }
        }
    });
}

TEST(ClampedEigenvaluesTest, OnlyAnExactlyDiagonalMatrixKeepsItsOrder) {
    EXPECT_EQ(clampedEigenvalues(diagonal({3.0, -1.0, 2.0})), (Vector{3.0, -1.0, 2.0}));
    for (const auto& [r, c] : {std::pair{0, 1}, {0, 2}, {1, 2}}) {
        Matrix a = diagonal({3.0, -1.0, 2.0});
        a[r][c] = a[c][r] = 1e-12;
        EXPECT_LE(maxDifference(clampedEigenvalues(a), Vector{-1.0, 2.0, 3.0}), 1e-14);
        // The square of what is missing to symmetry is at most 1e-07.
        a[r][c] = 3.1e-4;
        clampedEigenvalues(a);
        a[r][c] = -3.2e-4;
        EXPECT_EQ(mathError([&] { clampedEigenvalues(a); }), "Math Error: Matrix is not symmetric");
    }
}

}  // namespace tavocal::test
