#include "numerics/Decompositions.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(DecompositionsTest, SvdTakesAMatrixApartAndTogetherAtEveryScale) {
    const Vector values{0.5, 1.0, 2.0};
    forEachSeed([&](RandomNumbers& random) {
        Matrix left(3, 3);
        // No element of the first row is small, so that the closed form reaches every eigenvector.
        while (std::fabs(left[0][0] * left[0][1] * left[0][2]) < 0.137) {
            left = rotationMatrix(random.vector(3, 3.0));
        }
        const Matrix right = rotationMatrix(random.vector(3, 3.0));
        for (const double scale : kScales) {
            const Matrix a = left * diagonal(values * scale) * transpose(right);
            const SvdResult s = svd(a);
            // The squares reach from 0.25 to 4, with a gap of 0.75: an error of the square matrix
            // over the gap, over the square of the first element.
            const double tolerance = 20 * kEpsilon * 4.0 / 0.75 / 0.09;
            EXPECT_LE(maxDifference(s.left * s.singular * transpose(s.right), a),
                      tolerance * 2.0 * scale);
            EXPECT_TRUE(s.left[0][0] > 0.0 && s.left[0][1] > 0.0 && s.left[0][2] > 0.0);
            EXPECT_LE(maxDifference(gram(s.right), identity(3)), 16 * tolerance);
            EXPECT_LE(maxDifference(s.singular, diagonal(values * scale)), tolerance * scale);
        }
    });
}

TEST(DecompositionsTest, SvdOfDiagonalsRotationsAndOtherSizes) {
    const SvdResult unsorted = svd(diagonal({2.0, 0.0, 3.0}));
    EXPECT_EQ(unsorted.singular, diagonal({2.0, 0.0, 3.0}));
    EXPECT_TRUE(unsorted.right == diagonal({1.0, 0.0, 1.0}) && unsorted.left == identity(3));
    // A * transpose(A) of a rotation is the identity but for rounding, which counts as diagonal.
    const Matrix rotation = rotationMatrix({0.3, -0.8, 1.1});
    EXPECT_EQ(svd(rotation).left, identity(3));
    EXPECT_LE(maxDifference(svd(rotation).right, transpose(rotation)), 2 * kEpsilon);

    const SvdResult high = svd(Matrix(3, 2, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}));
    EXPECT_TRUE(high.left == Matrix(3, 3) && high.right == Matrix(2, 2));
    EXPECT_TRUE(high.singular == Matrix(3, 2) && svd(Matrix(2, 3)).singular == Matrix(2, 3));
}

}  // namespace tavocal::test
