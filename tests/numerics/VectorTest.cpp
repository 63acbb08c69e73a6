#include "numerics/Vector.h"

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
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Both sides of the special length 3 and of the end of the inline room at 12, and far beyond.
const std::vector<int> kSizes = {0, 1, 2, 3, 4, 11, 12, 13, 60};

Vector counted(int size, double first) {
    Vector result(size);
    for (int i = 0; i < size; ++i) {
        result[i] = first + i;
    }
    return result;
}

TEST(Vector, NewVectorIsZeros) {
    EXPECT_TRUE(Vector().empty());
    for (const int size : kSizes) {
        const Vector zeros(size);
        EXPECT_EQ(zeros.size(), size);
        EXPECT_EQ(sumOfSquares(zeros), 0.0);
    }
}

TEST(Vector, CopiesAndMovesKeepEveryElementAndShareNone) {
    for (const int size : kSizes) {
        const Vector expected = counted(size, 1.0);
        Vector original = expected;
        Vector copy(original);
        for (double& x : original) {
            x = -1.0;
        }
        EXPECT_EQ(copy, expected) << size;
        const Vector moved(std::move(copy));
        EXPECT_EQ(moved, expected) << size;
        copy = moved;  // a moved-from vector can be given a new value
        EXPECT_EQ(copy, expected) << size;
    }
}

TEST(Vector, AssignmentGoesBetweenAllSizes) {
    for (const int from : kSizes) {
        for (const int to : kSizes) {
            Vector source = counted(from, 1.0);
            Vector copied = counted(to, 100.0);
            copied = source;
            EXPECT_EQ(copied, counted(from, 1.0)) << to << " from " << from;
            Vector moved = counted(to, 100.0);
            moved = std::move(source);
            EXPECT_EQ(moved, counted(from, 1.0)) << to << " from " << from;
        }
    }
}

TEST(Vector, AssignmentToItselfChangesNothing) {
    for (const int size : kSizes) {
        Vector v = counted(size, 1.0);
        Vector& same = v;
        v = same;
        EXPECT_EQ(v, counted(size, 1.0));
        v = std::move(same);
        EXPECT_EQ(v, counted(size, 1.0));
    }
}

TEST(Vector, EqualityNeedsSizeAndElements) {
    EXPECT_EQ((Vector{1.0, 2.0}), (Vector{1.0, 2.0}));
    EXPECT_FALSE((Vector{1.0, 2.0}) == (Vector{1.0, 2.0, 0.0}));
    EXPECT_FALSE((Vector{1.0, 2.0}) == (Vector{1.0, 2.5}));
    EXPECT_FALSE(Vector{kNotANumber} == Vector{kNotANumber});
}

TEST(Vector, SumsAndDifferencesHaveTheRightOperandsSize) {
    const Vector a{5.0, 7.0, 9.0};
    const Vector b{1.0, 2.0};
    EXPECT_EQ(a - b, (Vector{4.0, 5.0}));
    EXPECT_EQ(a + b, (Vector{6.0, 9.0}));
    EXPECT_EQ(mathError([&] { return b - a; }), "Math Error: Error while substructing vector");

    Vector total = b;
    total += a;
    EXPECT_EQ(total, (Vector{6.0, 9.0}));
}

TEST(Vector, DivisionMultipliesByTheReciprocal) {
    // 49 / 49 is 1, 49 * (1 / 49) is not.
    EXPECT_EQ((Vector{49.0} / 49.0)[0], 0.9999999999999999);
    const Vector unbounded = Vector{1.0, -2.0} / 0.0;
    EXPECT_EQ(unbounded, (Vector{kInfinity, -kInfinity}));
    EXPECT_TRUE(std::isnan(normalized(Vector(3))[0]));
}

TEST(Vector, ElementwiseOperations) {
    const Vector a{1.0, -4.0, 9.0};
    EXPECT_EQ(a - 2.0, (Vector{-1.0, -6.0, 7.0}));
    EXPECT_EQ(a * 2.0, (Vector{2.0, -8.0, 18.0}));
    EXPECT_EQ(absValues(a), (Vector{1.0, 4.0, 9.0}));
    EXPECT_EQ(sqrtValues(absValues(a)), (Vector{1.0, 2.0, 3.0}));
    EXPECT_EQ(elementProduct(a, Vector{2.0, 3.0, -1.0, 5.0}), (Vector{2.0, -12.0, -9.0}));
    EXPECT_EQ(sum(a), 6.0);
    EXPECT_EQ(dot(a, ones3()), 6.0);
    EXPECT_EQ(sumOfSquares(a), 98.0);
    EXPECT_EQ(norm(Vector{2.0, 3.0, 6.0}), 7.0);
}

TEST(Vector, SumsRunInIndexOrder) {
    // 1 is lost against 1e16 if it comes later, and kept if the large ones have cancelled.
    EXPECT_EQ(sum(Vector{1e16, 1.0, -1e16}), 0.0);
    EXPECT_EQ(sum(Vector{1e16, -1e16, 1.0}), 1.0);
    EXPECT_EQ(dot(Vector{1e16, 1.0, -1e16}, ones3()), 0.0);
}

TEST(Vector, CrossProductIsPerpendicularAndAntisymmetric) {
    EXPECT_EQ(vector3CrossProduct({1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}), (Vector{0.0, 0.0, 1.0}));
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        for (const double scale : {1e-8, 1.0, 1e8}) {
            const Vector a = random.vector(3, scale);
            const Vector b = random.vector(3, scale);
            const Vector c = vector3CrossProduct(a, b);
            EXPECT_EQ(c, vector3CrossProduct(b, a) * -1.0) << "seed " << seed;
            EXPECT_NEAR(dot(a, c), 0.0, 6 * kEpsilon * scale * scale * scale) << "seed " << seed;
        }
    }
}

TEST(Vector, OperationsOnThreeElementsRefuseOtherSizes) {
    const std::string cross =
        "Math Error: Error from vector3CrossProduct, expected vector length was 3";
    EXPECT_EQ(mathError([] { return vector3CrossProduct(Vector(2), Vector(3)); }), cross);
    EXPECT_EQ(mathError([] { return vector3CrossProduct(Vector(3), Vector(4)); }), cross);
    const std::string index = "Math Error: Error from getIndexOfAbsoluteMax, expected a 3X1 matrix";
    EXPECT_EQ(mathError([] { return getIndexOfAbsoluteMax(Vector(2)); }), index);
    EXPECT_EQ(mathError([] { return getIndexOfAbsoluteMax(Vector(4)); }), index);
}

TEST(Vector, AngleBetweenIsTheTurnAtEveryScale) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        const Vector a = random.unitVector();
        const Vector axis = normalized(vector3CrossProduct(a, random.unitVector()));
        for (const double angle : {0.001, 0.5, 1.5, 3.0}) {
            const Vector b = test::rotationMatrix(axis * angle) * a;
            for (const double scale : {1e-8, 1.0, 1e8}) {
                // acos turns a rounding of the cosine into 1 / sin(angle) times as much.
                const double tolerance = 10 * kEpsilon / std::sin(angle);
                EXPECT_NEAR(angleBetween(a * scale, b), angle, tolerance) << "seed " << seed;
                EXPECT_EQ(clampedAngleBetween(a * scale, b), angleBetween(a * scale, b));
            }
        }
    }
}

TEST(Vector, OnlyTheClampedAngleSurvivesACosineAboveOne) {
    // sqrt(3)^2 rounds to below 3.
    EXPECT_TRUE(std::isnan(angleBetween(ones3(), ones3())));
    EXPECT_EQ(clampedAngleBetween(ones3(), ones3()), 0.0);
    EXPECT_EQ(clampedAngleBetween(ones3(), ones3() * -1.0), 3.141592653589793);
    EXPECT_TRUE(std::isnan(clampedAngleBetween(Vector(3), ones3())));
}

TEST(Vector, TheFirstOfTheLargestElementsWins) {
    struct Case {
        Vector values;
        int index;
        double magnitude;
    };
    const std::vector<Case> cases = {
        {{1.0, -1.0, 0.5}, 0, 1.0},        {{0.5, -1.0, 1.0}, 1, 1.0},
        {{0.0, 1.0, -2.0}, 2, 2.0},        {{0.0, 0.0, 0.0}, 0, 0.0},
        {{kNotANumber, 1.0, 2.0}, 2, 2.0}, {{-kInfinity, 1.0, 2.0}, 0, kInfinity},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(getIndexOfAbsoluteMax(c.values), c.index);
        EXPECT_EQ(indexOfLargestSquare(c.values), c.index);
        EXPECT_EQ(largestMagnitude(c.values), c.magnitude);
    }
    EXPECT_EQ(indexOfLargestSquare(counted(13, -4.0)), 12);
    EXPECT_EQ(indexOfLargestSquare(counted(9, -4.0)), 0);
    EXPECT_EQ(indexOfLargestSquare(Vector()), 0);
    EXPECT_EQ(largestMagnitude(Vector()), 0.0);
}

}  // namespace
}  // namespace tavocal
