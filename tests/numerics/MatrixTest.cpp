#include "numerics/Matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::kEpsilon;
using test::mathError;
using test::maxDifference;
using test::RandomNumbers;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

const Matrix kTwoByThree(2, 3, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});

TEST(Matrix, ConstructorsAgree) {
    EXPECT_EQ(Matrix(std::vector<Vector>{{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}}), kTwoByThree);
    EXPECT_EQ(Matrix(Vector{1.0, 2.0}), Matrix(2, 1, {1.0, 2.0}));
    EXPECT_EQ(Matrix(std::vector<Vector>{}), Matrix(0, 0));
    EXPECT_EQ(Matrix(2, 3), kTwoByThree * 0.0);
    EXPECT_EQ(kTwoByThree[1][0], 4.0);
    EXPECT_FALSE(Matrix(2, 3) == Matrix(3, 2));
}

TEST(Matrix, CopiesAndMovesAtBothSidesOfTheInlineRoom) {
    for (const int n : {0, 1, 3, 12, 13, 60}) {
        const Matrix expected = RandomNumbers(1).matrix(n, n);
        Matrix original = expected;
        Matrix copy = original;
        original = Matrix(2, 2);
        EXPECT_EQ(copy, expected) << n;
        Matrix moved = std::move(copy);
        EXPECT_EQ(moved, expected) << n;
        // That a moved-from matrix is empty is promised.
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        EXPECT_EQ(copy.rows() * copy.cols(), 0) << n;
        original = std::move(moved);
        EXPECT_EQ(original, expected) << n;
        moved = original;
        EXPECT_EQ(moved, expected) << n;
    }
}

TEST(Matrix, RowsAndColumns) {
    Matrix m = kTwoByThree;
    EXPECT_EQ(row(m, 1), (Vector{4.0, 5.0, 6.0}));
    EXPECT_EQ(column(m, 2), (Vector{3.0, 6.0}));
    m.setRow(0, {7.0, 8.0, 9.0});
    m.setColumn(1, {0.0, -1.0});
    EXPECT_EQ(flattened(m), (Vector{7.0, 0.0, 9.0, 4.0, -1.0, 6.0}));
    EXPECT_EQ(submatrix(m, 0, 2, 1, 3), Matrix(2, 2, {0.0, 9.0, -1.0, 6.0}));
    EXPECT_EQ(submatrix(m, 1, 1, 0, 3), Matrix(0, 3));
}

TEST(Matrix, ProductsOfKnownValues) {
    const Matrix b(3, 2, {1.0, 0.0, 0.0, 1.0, 2.0, -1.0});
    EXPECT_EQ(kTwoByThree * b, Matrix(2, 2, {7.0, -1.0, 16.0, -1.0}));
    EXPECT_EQ(kTwoByThree * (Vector{1.0, 0.0, -1.0}), (Vector{-2.0, -2.0}));
    EXPECT_EQ((Vector{1.0, -1.0}) * kTwoByThree, (Vector{-3.0, -3.0, -3.0}));
    EXPECT_EQ(kTwoByThree - Matrix(3, 3, std::vector<double>(9, 1.0)),
              Matrix(2, 3, {0.0, 1.0, 2.0, 3.0, 4.0, 5.0}));
    EXPECT_EQ((Matrix(1, 1, {49.0}) / 49.0)[0][0], 0.9999999999999999);
}

TEST(Matrix, ProductsRefuseSizesThatDoNotMeet) {
    const std::string expected =
        "Math Error: Wrong matrices. The number of columns in the first matrix should be equal to "
        "the number of rows in the second";
    EXPECT_EQ(mathError([] { return kTwoByThree * kTwoByThree; }), expected);
    EXPECT_EQ(mathError([] { return kTwoByThree * Vector(2); }), expected);
    EXPECT_EQ(mathError([] { return Vector(3) * kTwoByThree; }), expected);
}

// These hold to the last bit, as both sides round the same products in the same order.
TEST(Matrix, TranspositionLawsHoldExactly) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const int rows = static_cast<int>(random.between(1, 20));
        const int inner = static_cast<int>(random.between(1, 20));
        const Matrix a = random.matrix(rows, inner);
        const Matrix b = random.matrix(inner, 7);
        const Vector v = random.vector(rows);
        EXPECT_EQ(transpose(transpose(a)), a) << "seed " << seed;
        EXPECT_EQ(transpose(a * b), transpose(b) * transpose(a)) << "seed " << seed;
        EXPECT_EQ(v * a, transpose(a) * v) << "seed " << seed;
        EXPECT_EQ(gram(a), transpose(a) * a) << "seed " << seed;
        EXPECT_EQ(identity(rows) * a, a) << "seed " << seed;
        EXPECT_EQ(trace(gram(a)), trace(transpose(a) * a)) << "seed " << seed;
    }
}

TEST(Matrix, DeterminantIsMultiplicative) {
    EXPECT_EQ(determinant(Matrix(3, 3, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 10.0})), -3.0);
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const double scale = seed % 2 == 0 ? 1e-8 : 1e8;
        const Matrix a = random.matrix(3, 3, scale);
        const Matrix b = random.matrix(3, 3);
        // Six products of three elements below `scale` on one side, of sums of three on the other.
        const double tolerance = 6 * 27 * 5 * kEpsilon * scale * scale * scale;
        EXPECT_NEAR(determinant(a * b), determinant(a) * determinant(b), tolerance)
            << "seed " << seed;
        EXPECT_NEAR(determinant(transpose(a)), determinant(a), tolerance) << "seed " << seed;
    }
    EXPECT_EQ(mathError([] { return determinant(identity(2)); }), "Math Error: Matrix is not 3x3");
    EXPECT_EQ(mathError([] { return determinant(kTwoByThree); }), "Math Error: Matrix is not 3x3");
}

TEST(Matrix, FlatIndexFindsTheFirstOfTheLargest) {
    EXPECT_EQ(flatIndexOfAbsoluteMax(Matrix(3, 3)), 0);
    for (int i = 0; i < 9; ++i) {
        std::vector<double> values(9, 0.5);
        values[static_cast<std::size_t>(i)] = -1.0;
        values[8] = i == 8 ? -1.0 : 1.0;
        EXPECT_EQ(flatIndexOfAbsoluteMax(Matrix(3, 3, values)), i);
    }
}

TEST(Matrix, DiagonalIsJudgedAgainstTheSmallestDiagonalElement) {
    const auto withCorner = [](double corner) {
        Matrix m = diagonal({3.0, 1.0, 2.0});
        m[0][2] = corner;
        return m;
    };
    EXPECT_TRUE(isDiagonal(withCorner(0.0)));
    EXPECT_TRUE(isDiagonal(withCorner(1e-10)));
    EXPECT_TRUE(isDiagonal(withCorner(-1e-10)));
    EXPECT_FALSE(isDiagonal(withCorner(1.01e-10)));
    EXPECT_FALSE(isDiagonal(withCorner(-2e-10)));
    EXPECT_FALSE(isDiagonal(withCorner(kNotANumber)));
    EXPECT_TRUE(isDiagonal(Matrix(3, 3)));
    EXPECT_FALSE(isDiagonal(Matrix(2, 3)));

    Matrix zeroOnDiagonal = diagonal({1.0, 0.0, 1.0});
    zeroOnDiagonal[0][1] = 1e-300;
    EXPECT_FALSE(isDiagonal(zeroOnDiagonal));
}

TEST(Matrix, AllIntegers) {
    EXPECT_TRUE(allIntegers(Matrix(2, 2, {0.0, -1.0, 32768.0, 2147483647.0})));
    for (const double other :
         {0.5, -1e-12, 2147483648.0, 1e300, kNotANumber, std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(allIntegers(Matrix(2, 2, {0.0, 1.0, 2.0, other}))) << other;
    }
}

}  // namespace
}  // namespace tavocal
