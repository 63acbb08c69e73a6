#include "numerics/NormalEquations.h"

#include <gtest/gtest.h>

#include "numerics/MatrixInverse.h"
#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::RandomNumbers;

// Bit for bit: whoever holds the whole system gets the same sums.
TEST(NormalEquations, SumLikeTheProductsOfTheWholeMatrices) {
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        for (const int unknowns : {3, 5, 9}) {
            RandomNumbers random(seed);
            const Matrix d = random.matrix(200, unknowns, 450.0);
            const Vector b = random.vector(200, 450.0);
            NormalEquations equations(unknowns);
            for (int r = 0; r < d.rows(); ++r) {
                equations.add(row(d, r), b[r]);
            }
            EXPECT_EQ(equations.gram(), gram(d)) << "seed " << seed;
            EXPECT_EQ(equations.gram(), transpose(d) * d) << "seed " << seed;
            EXPECT_EQ(equations.solve(), inverse(gram(d)) * (transpose(d) * b)) << "seed " << seed;
        }
    }
}

}  // namespace
}  // namespace tavocal
