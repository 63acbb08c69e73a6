#include "numerics/NormalEquations.h"

#include <gtest/gtest.h>

#include "numerics/MatrixInverse.h"
#include "numerics/NumericsTesting.h"

namespace tavocal::test {

// Bit for bit: whoever holds the whole system gets the same sums.
TEST(NormalEquationsTest, SumLikeTheProductsOfTheWholeMatrices) {
    forEachSeed([](RandomNumbers& random) {
        const Matrix d = random.matrix(100, 9, 450.0);
        const Vector b = random.vector(100, 450.0);
        NormalEquations equations(9);
        for (int r = 0; r < d.rows(); ++r) {
            equations.add(row(d, r), b[r]);
        }
        EXPECT_EQ(equations.gram(), transpose(d) * d);
        EXPECT_EQ(equations.solve(), inverse(gram(d)) * (transpose(d) * b));
    });
}

}  // namespace tavocal::test
