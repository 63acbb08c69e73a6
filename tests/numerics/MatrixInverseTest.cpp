#include "numerics/MatrixInverse.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::infinityNorm;
using test::kEpsilon;
using test::mathError;
using test::maxDifference;
using test::RandomNumbers;

// What rounding may leave of a * inverted = identity: n products in each element, and an error of
// the inverse that grows with the condition number.
double residualLimit(const Matrix& a, const Matrix& inverted) {
    return 4 * a.rows() * kEpsilon * infinityNorm(a) * infinityNorm(inverted);
}

TEST(MatrixInverse, TimesTheMatrixIsTheIdentity) {
    for (const int n : {1, 2, 3, 4, 9, 12, 13, 40}) {
        for (const double scale : {1e-8, 1.0, 1e8}) {
            for (std::uint64_t seed = 1; seed <= 5; ++seed) {
                const Matrix a = RandomNumbers(seed).matrix(n, n, scale);
                const Matrix inverted = inverse(a);
                const double limit = residualLimit(a, inverted);
                ASSERT_LT(limit, 1e-6) << "n " << n << " seed " << seed;
                EXPECT_LE(maxDifference(a * inverted, identity(n)), limit)
                    << "n " << n << " scale " << scale << " seed " << seed;
                EXPECT_LE(maxDifference(inverted * a, identity(n)), limit)
                    << "n " << n << " scale " << scale << " seed " << seed;
            }
        }
    }
}

TEST(MatrixInverse, NearTheIdentityItIsTheIdentityMinusThePerturbation) {
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        const Matrix small = RandomNumbers(seed).matrix(3, 3, 1e-8);
        const Matrix a = identity(3) - small;
        const Matrix expected = identity(3) - small * -1.0;
        // The next term of the series is the square of the perturbation, 3e-16 at most.
        EXPECT_LE(maxDifference(inverse(a), expected), 3e-16 + 4 * kEpsilon) << "seed " << seed;
        EXPECT_LE(maxDifference(inverse3(a), expected), 3e-16 + 4 * kEpsilon) << "seed " << seed;
    }
}

TEST(MatrixInverse, ClosedFormAgreesWithElimination) {
    for (std::uint64_t seed = 1; seed <= 50; ++seed) {
        RandomNumbers random(seed);
        const Matrix a = random.matrix(3, 3, seed % 2 == 0 ? 1e-5 : 1e5);
        const Matrix general = inverse(a);
        const double condition = infinityNorm(a) * infinityNorm(general);
        EXPECT_LE(maxDifference(inverse3(a), general),
                  12 * kEpsilon * condition * infinityNorm(general))
            << "seed " << seed;
    }
}

TEST(MatrixInverse, OfAPermutationIsItsTransposeExactly) {
    std::vector<int> order = {0, 1, 2, 3};
    do {
        Matrix permutation(4, 4);
        for (int r = 0; r < 4; ++r) {
            permutation[r][order[static_cast<std::size_t>(r)]] = 1.0;
        }
        EXPECT_EQ(inverse(permutation), transpose(permutation));
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(MatrixInverse, OfAHilbertMatrixIsItsKnownIntegers) {
    Matrix hilbert(3, 3);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            hilbert[r][c] = 1.0 / (r + c + 1);
        }
    }
    const Matrix expected(3, 3, {9.0, -36.0, 30.0, -36.0, 192.0, -180.0, 30.0, -180.0, 180.0});
    const double condition = infinityNorm(hilbert) * infinityNorm(expected);  // 748
    EXPECT_LE(maxDifference(inverse(hilbert), expected), 192 * condition * kEpsilon);
    EXPECT_LE(maxDifference(inverse3(hilbert), expected), 192 * condition * kEpsilon);
}

TEST(MatrixInverse, ClosedFormDividesEachCofactorAndKeepsZerosPositive) {
    // 49 / 49 is 1, 49 * (1 / 49) is not.
    const Matrix inverted = inverse3(diagonal({49.0, 1.0, 1.0}));
    EXPECT_EQ(inverted, diagonal({1.0 / 49.0, 1.0, 1.0}));
    for (const double x : flattened(inverted)) {
        EXPECT_FALSE(std::signbit(x));
    }
}

TEST(MatrixInverse, SingularMatrices) {
    const Matrix singular(3, 3, {1.0, 2.0, 3.0, 2.0, 4.0, 6.0, 0.0, 1.0, 1.0});
    EXPECT_EQ(mathError([&] { return inverse3(singular); }), "Math Error: Failed to invert matrix");
    const Vector elements = flattened(inverse(singular));
    EXPECT_TRUE(
        std::any_of(elements.begin(), elements.end(), [](double x) { return !std::isfinite(x); }));
    EXPECT_FALSE(std::isfinite(inverse(Matrix(12, 12))[0][0]));

    // A determinant that is merely small is no failure.
    EXPECT_EQ(inverse3(identity(3) * 1e-100), identity(3) * 1e100);
}

TEST(MatrixInverse, RefusesWrongSizes) {
    EXPECT_EQ(mathError([] { return inverse(Matrix(2, 3)); }), "Math Error: Matrix is not square");
    EXPECT_EQ(mathError([] { return inverse3(identity(2)); }), "Math Error: Matrix is not 3x3");
    EXPECT_EQ(inverse(Matrix()), Matrix());
}

}  // namespace
}  // namespace tavocal
