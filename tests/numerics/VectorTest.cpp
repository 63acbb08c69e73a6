#include "numerics/Vector.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(VectorTest, IsAValueOfAnySize) {
    // Both sides of the special length 3 and of the end of the inline room at 12.
    for (const int size : {0, 2, 3, 4, 12, 13}) {
        EXPECT_EQ(sumOfSquares(Vector(size)), 0.0);
        const Vector expected = RandomNumbers(1).vector(size);
        for (const int other : {0, 3, 12, 13}) {
            Vector taken(expected);
            Vector& same = taken;
            taken = same;
            taken = std::move(same);
            const Vector moved(std::move(taken));
            taken = Vector(other);
            taken = moved;
            EXPECT_EQ(taken, expected) << other << " from " << size;
        }
    }
    EXPECT_FALSE((Vector{1.0, 2.0}) == (Vector{1.0, 2.5}) ||
                 Vector{kNotANumber} == Vector{kNotANumber});
}

TEST(VectorTest, OperationsOnKnownValues) {
    const Vector a{1.0, -4.0, 9.0};
    Vector b{1.0, 2.0};
    EXPECT_EQ(a - b, (Vector{0.0, -6.0}));
    EXPECT_EQ(a + b, (Vector{2.0, -2.0}));
    EXPECT_EQ(b += a, (Vector{2.0, -2.0}));
    EXPECT_EQ(a - 2.0, (Vector{-1.0, -6.0, 7.0}));
    EXPECT_EQ(sqrtValues(absValues(a * 4.0)), (Vector{2.0, 4.0, 6.0}));
    EXPECT_EQ(elementProduct(a, {2.0, 3.0, -1.0, 5.0}), (Vector{2.0, -12.0, -9.0}));
    EXPECT_EQ(dot(a, {2.0, 3.0, -1.0, 5.0}), -19.0);
    EXPECT_EQ(vector3CrossProduct({2.0, 3.0, 5.0}, {7.0, 11.0, 13.0}), (Vector{-16.0, 9.0, 1.0}));
    // 49 / 49 is 1, 49 * (1 / 49) is not.
    EXPECT_EQ((Vector{49.0} / 49.0)[0], 0.9999999999999999);
    EXPECT_EQ((Vector{1.0, -2.0} / 0.0), (Vector{kInfinity, -kInfinity}));
    // Sums run in index order: 1 is lost against 1e16, and kept once the large ones cancelled.
    EXPECT_TRUE(sum({1e16, 1.0, -1e16}) == 0.0 && dot({1e16, 1.0, -1e16}, ones3()) == 0.0);
}

TEST(VectorTest, AngleBetweenIsTheTurnAtEveryScale) {
    forEachSeed([](RandomNumbers& random) {
        const Vector a = random.unitVector();
        const Vector axis = normalized(vector3CrossProduct(a, random.unitVector()));
        for (const double angle : {0.001, 0.5, 1.5, 3.0}) {
            const Vector b = rotationMatrix(axis * angle) * a * std::exp(10.0 * angle);
            // acos turns a rounding of the cosine into 1 / sin(angle) times as much.
            EXPECT_NEAR(angleBetween(a, b), angle, 10 * kEpsilon / std::sin(angle));
            EXPECT_EQ(clampedAngleBetween(a, b), angleBetween(a, b));
        }
    });
    // sqrt(3)^2 rounds to below 3, so the cosine lies above 1.
    EXPECT_TRUE(std::isnan(angleBetween(ones3(), ones3())));
    EXPECT_EQ(clampedAngleBetween(ones3(), ones3()), 0.0);
    EXPECT_EQ(clampedAngleBetween(ones3(), ones3() * -1.0), 3.141592653589793);
}

TEST(VectorTest, TheFirstOfTheLargestElementsWins) {
    for (const auto& [values, index] : {std::pair<Vector, int>{{0.5, -0.5, 0.2}, 0},
                                        {{0.5, -1.0, 1.0}, 1},
                                        {{0.0, 0.0, 0.0}, 0},
                                        {{kNotANumber, 1.0, 2.0}, 2},
                                        {{-kInfinity, 1.0, 2.0}, 0}}) {
        EXPECT_EQ(getIndexOfAbsoluteMax(values), index);
        EXPECT_EQ(indexOfLargestSquare(values), index);
        EXPECT_EQ(largestMagnitude(values), std::fabs(values[index]));
    }
    EXPECT_EQ(indexOfLargestSquare({0.0, 1.0, -2.0, 3.0}), 3);
}

TEST(VectorTest, SignsAndFiniteness) {
    EXPECT_TRUE(signOf(1e-300) == 1.0 && signOf(-0.5) == -1.0 && signOf(-0.0) == 0.0);
    EXPECT_EQ(countNotFinite(Vector{}) + countNotFinite(Vector{1e308, -1e308}), 0);
    EXPECT_EQ(countNotFinite(Vector{kNotANumber, 0.0, kInfinity, -kInfinity}), 3);
}

}  // namespace tavocal::test
