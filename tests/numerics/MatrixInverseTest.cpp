#include "numerics/MatrixInverse.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(MatrixInverseTest, TimesTheMatrixIsTheIdentity) {
    forEachSeed([](RandomNumbers& random) {
        for (const double scale : kScales) {
            for (const int n : {1, 2, 4, 9, 12, 13, 3}) {
                const Matrix a = random.matrix(n, n, scale);
                for (const Matrix& b : {inverse(a), n == 3 ? inverse3(a) : inverse(a)}) {
                    // What rounding may leave of the identity: n products in each element, and an
                    // error of the inverse that grows with the condition number.
                    const double limit = 4 * n * kEpsilon * norm(flattened(a)) * norm(flattened(b));
                    ASSERT_LT(limit, 1e-6);
                    EXPECT_LE(maxDifference(a * b, identity(n)), limit);
                    EXPECT_LE(maxDifference(b * a, identity(n)), limit);
                }
            }
        }
    });
}

TEST(MatrixInverseTest, KnownValuesComeExactly) {
    // 49 / 49 is 1, 49 * (1 / 49) is not.
    const Matrix inverted = inverse3(diagonal({49.0, 1.0, 1.0}));
    EXPECT_EQ(inverted, diagonal({1.0 / 49.0, 1.0, 1.0}));
    EXPECT_FALSE(std::signbit(inverted[0][1]) || std::signbit(inverted[1][0]));
    // A determinant that is merely small is no failure.
    EXPECT_EQ(inverse3(identity(3) * 1e-100), identity(3) * 1e100);
    // In elimination what is singular gives no number, and no failure either.
    EXPECT_FALSE(std::isfinite(inverse(Matrix(12, 12))[0][0]));
}

}  // namespace tavocal::test
