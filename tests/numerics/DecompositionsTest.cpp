#include "numerics/Decompositions.h"

#include <gtest/gtest.h>

#include <algorithm>
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

// A rotation whose first row has no small element, so that every column is an eigenvector in
// reach of the closed form.
Matrix reachableBasis(RandomNumbers& random) {
    Matrix basis = rotationMatrix(random.vector(3, 3.0));
    const auto smallest = [](const Matrix& m) {
        return std::min({std::fabs(m[0][0]), std::fabs(m[0][1]), std::fabs(m[0][2])});
    };
    while (smallest(basis) < 0.3) {
        basis = rotationMatrix(random.vector(3, 3.0));
    }
    return basis;
}

Matrix product(const SvdResult& s) {
    return s.left * s.singular * transpose(s.right);
}

TEST(SymmetricEigen, FindsTheValuesAndVectorsThatTheMatrixWasMadeOf) {
    const Vector values{-0.5, 1.0, 2.0};
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const Matrix basis = reachableBasis(random);
        for (const double scale : {1e-8, 1.0, 1e8}) {
            const Matrix a = basis * diagonal(values * scale) * transpose(basis);
            const Vector found = symmetricEigenvalues(a);
            EXPECT_LE(maxDifference(found, values * scale), 20 * kEpsilon * 2.0 * scale)
                << "seed " << seed;
            for (int i = 0; i < 3; ++i) {
                const Vector v = symmetricEigenvector(a, found[i]);
                const Vector expected = column(basis, i) * (basis[0][i] < 0.0 ? -1.0 : 1.0);
                // An error of the matrix over the gap of 1 to the next value, over the square of
                // the first element.
                EXPECT_LE(maxDifference(v, expected), 20 * kEpsilon * 2.0 / 0.09)
                    << "seed " << seed << " scale " << scale;
            }
        }
    }
}

TEST(SymmetricEigen, DiagonalKeepsItsOrder) {
    EXPECT_EQ(symmetricEigenvalues(diagonal({3.0, -1.0, 2.0})), (Vector{3.0, -1.0, 2.0}));
}

TEST(SymmetricEigen, OfIntegerMatrices) {
    // Characteristic polynomials (x - 1)(x - 2)(x - 4) and x (x - 1)(x - 3).
    const Matrix a(3, 3, {3.0, 1.0, 1.0, 1.0, 2.0, 0.0, 1.0, 0.0, 2.0});
    EXPECT_LE(maxDifference(symmetricEigenvalues(a), Vector{1.0, 2.0, 4.0}), 20 * kEpsilon * 4.0);
    const Matrix b(3, 3, {1.0, -1.0, 0.0, -1.0, 2.0, -1.0, 0.0, -1.0, 1.0});
    EXPECT_LE(maxDifference(symmetricEigenvalues(b), Vector{0.0, 1.0, 3.0}), 20 * kEpsilon * 3.0);
}

TEST(Svd, TakesAMatrixApartAndTogetherAtEveryScale) {
    const Vector values{0.5, 1.0, 2.0};
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const Matrix left = reachableBasis(random);
        const Matrix right = rotationMatrix(random.vector(3, 3.0));
        for (const double scale : {1e-8, 1.0, 1e8}) {
            const Matrix a = left * diagonal(values * scale) * transpose(right);
            const SvdResult s = svd(a);
            // The squares reach from 0.25 to 4, with a gap of 0.75: an error of the square matrix
            // over the gap, over the square of the first element.
            const double tolerance = 20 * kEpsilon * 4.0 / 0.75 / 0.09;
            EXPECT_LE(maxDifference(product(s), a), tolerance * 2.0 * scale) << "seed " << seed;
            EXPECT_LE(maxDifference(gram(s.left), identity(3)), tolerance) << "seed " << seed;
            EXPECT_LE(maxDifference(gram(s.right), identity(3)), 16 * tolerance) << "seed " << seed;
            EXPECT_LE(maxDifference(s.singular, diagonal(values * scale)), tolerance * scale)
                << "seed " << seed;
        }
    }
}

TEST(Svd, NearTheIdentityFindsTheNearestRotation) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        for (const double size : {1e-8, 1e-4, 1e-2}) {
            const Matrix basis = reachableBasis(random);
            const Matrix rotation = rotationMatrix(random.vector(3, 1.0));
            const Matrix stretch =
                basis * diagonal({1.0 - size, 1.0, 1.0 + 2.0 * size}) * transpose(basis);
            const Matrix a = stretch * rotation;
            const SvdResult s = svd(a);
            // The gap of the squares is 2 * size, and the vectors are as sharp as that leaves.
            const double tolerance = 20 * kEpsilon / (2.0 * size) / 0.09;
            EXPECT_LE(maxDifference(product(s), a), tolerance) << "seed " << seed;
            EXPECT_LE(maxDifference(s.left * transpose(s.right), rotation), tolerance)
                << "seed " << seed << " size " << size;
        }
    }
}

TEST(Svd, OfDiagonalAndRotationMatricesIsExactlyOrdered) {
    const SvdResult one = svd(identity(3));
    EXPECT_EQ(one.left, identity(3));
    EXPECT_EQ(one.right, identity(3));
    EXPECT_EQ(one.singular, identity(3));

    const SvdResult unsorted = svd(diagonal({2.0, 1.0, 3.0}));
    EXPECT_EQ(unsorted.singular, diagonal({2.0, 1.0, 3.0}));
    EXPECT_EQ(unsorted.left, identity(3));

    // A * transpose(A) of a rotation is the identity but for rounding, which counts as diagonal.
    const Matrix rotation = rotationMatrix({0.3, -0.8, 1.1});
    const SvdResult turned = svd(rotation);
    EXPECT_EQ(turned.left, identity(3));
    EXPECT_LE(maxDifference(turned.right, transpose(rotation)), 2 * kEpsilon);
}

TEST(Svd, OfARankDeficientDiagonalHasZerosForNaNs) {
    const SvdResult s = svd(diagonal({2.0, 0.0, 3.0}));
    EXPECT_EQ(s.singular, diagonal({2.0, 0.0, 3.0}));
    EXPECT_EQ(s.right, diagonal({1.0, 0.0, 1.0}));
}

TEST(Svd, OtherSizesGiveZeroMatrices) {
    const SvdResult s = svd(Matrix(2, 2, {1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(s.left, Matrix(2, 2));
    EXPECT_EQ(s.right, Matrix(2, 2));
    EXPECT_EQ(s.singular, Matrix(2, 2));
    const SvdResult wide = svd(Matrix(2, 4));
    EXPECT_EQ(product(wide), Matrix(2, 4));

    EXPECT_EQ(mathError([] { return symmetricEigenvalues(identity(2)); }),
              "Math Error: Matrix is not 3x3");
    EXPECT_EQ(mathError([] { return symmetricEigenvector(identity(4), 1.0); }),
              "Math Error: Matrix is not 3x3");
}

TEST(Svd, NonFiniteElementsTravelOn) {
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        Matrix a = identity(3);
        a[1][2] = bad;
        EXPECT_FALSE(std::isfinite(sum(flattened(svd(a).singular))));
    }
}

}  // namespace
}  // namespace tavocal
