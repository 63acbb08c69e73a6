#include "numerics/Matrix.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(MatrixTest, OperationsOnKnownValues) {
    EXPECT_EQ(Matrix(std::vector<Vector>{{1, 2}, {4, 5}}), Matrix(2, 2, {1, 2, 4, 5}));
    EXPECT_EQ(Matrix(Vector{1.0, 2.0}), Matrix(2, 1, {1.0, 2.0}));
    EXPECT_TRUE(Matrix(std::vector<Vector>{}) == Matrix() && !(Matrix(2, 3) == Matrix(3, 2)));
    Matrix m(2, 3, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
    EXPECT_EQ(m * Matrix(3, 1, {1.0, 0.0, -2.0}), Matrix(2, 1, {-5.0, -8.0}));
    EXPECT_EQ(m - Matrix(3, 3, std::vector<double>(9, 4)), Matrix(2, 3, {-3, -2, -1, 0, 1, 2}));
    EXPECT_EQ(trace(m) + trace(transpose(m)), 12.0);
    m.setRow(0, {7.0, 8.0, 9.0});
    m.setColumn(1, {0.0, -1.0});
    EXPECT_EQ(flattened(m), (Vector{7.0, 0.0, 9.0, 4.0, -1.0, 6.0}));
    EXPECT_EQ(submatrix(m, 0, 2, 1, 3), Matrix(2, 2, {0.0, 9.0, -1.0, 6.0}));
    EXPECT_EQ((Matrix(1, 1, {49.0}) / 49.0)[0][0], 0.9999999999999999);
    EXPECT_EQ(determinant(Matrix(3, 3, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 10.0})), -3.0);
}

// These hold to the last bit, as both sides round the same products in the same order.
TEST(MatrixTest, TranspositionLawsHoldExactly) {
    forEachSeed([](RandomNumbers& random) {
        const int rows = static_cast<int>(random.between(1, 20));
        const Matrix a = random.matrix(rows, 5);
        const Matrix b = random.matrix(5, 7);
        const Vector v = random.vector(rows);
        EXPECT_EQ(transpose(a * b), transpose(b) * transpose(a));
        EXPECT_EQ(v * a, transpose(a) * v);
        EXPECT_EQ(gram(a), transpose(a) * a);
    });
}

TEST(MatrixTest, FlatIndexFindsTheFirstOfTheLargest) {
    for (int i = 0; i < 9; ++i) {
        std::vector<double> values(9, 0.5);
        values[8] = 1.0;
        values[static_cast<std::size_t>(i)] = -1.0;
        EXPECT_EQ(flatIndexOfAbsoluteMax(Matrix(3, 3, values)), i);
    }
}

TEST(MatrixTest, DiagonalsAndWholeNumbersAreToldUpToALimit) {
    for (const auto& [r, c] : {std::pair{0, 1}, {0, 2}, {2, 1}}) {
        for (const double corner : {0.0, 1e-10, -1e-10, 1.01e-10, -1.01e-10, kNotANumber}) {
            Matrix m = diagonal({3.0, 2.0, 1.0});
            m[r][c] = corner;
            EXPECT_EQ(isDiagonal(m), std::fabs(corner) <= 1e-10) << corner;
        }
    }
    EXPECT_TRUE(allIntegers(Matrix(2, 2, {0.0, -1.0, 32768.0, 2147483647.0})));
    for (const double other : {0.5, -1e-12, 2147483648.0, kNotANumber, kInfinity}) {
        EXPECT_FALSE(allIntegers(Matrix(1, 2, {1.0, other}))) << other;
    }
    EXPECT_TRUE(isDiagonal(Matrix(3, 3)) && isDiagonal(Matrix()) && !isDiagonal(Matrix(2, 3)));
}

}  // namespace tavocal::test
