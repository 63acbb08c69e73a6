#include "numerics/Quaternion.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::kEpsilon;
using test::mathError;
using test::maxDifference;
using test::RandomNumbers;

// At the identity, where a series would switch branches, and far off.
constexpr double kAngles[] = {0.0, 1e-300, 1e-8, 0.1, 1.0, 3.0, 3.141592653589793, 6.0};

Vector asVector(const Quaternion& q) {
    return {q.x, q.y, q.z, q.w};
}

TEST(Quaternion, OfTheZeroVectorIsTheIdentity) {
    EXPECT_EQ(quaternionFromRotationVector({0.0, 0.0, 0.0}), (Quaternion{0.0, 0.0, 0.0, 1.0}));
    EXPECT_EQ(Quaternion(), (Quaternion{0.0, 0.0, 0.0, 1.0}));
}

TEST(Quaternion, OfAQuarterTurnAboutZ) {
    const Quaternion q = quaternionFromRotationVector({0.0, 0.0, 1.5707963267948966});
    const double half = std::sqrt(0.5);
    EXPECT_LE(maxDifference(asVector(q), Vector{0.0, 0.0, half, half}), kEpsilon);
    EXPECT_LE(maxDifference(rotateByQuaternion(q, {1.0, 0.0, 0.0}), Vector{0.0, 1.0, 0.0}),
              2 * kEpsilon);
}

TEST(Quaternion, TurnsLikeTheRotationMatrix) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        for (const double angle : kAngles) {
            const Vector turn = random.unitVector() * angle;
            const Quaternion q = quaternionFromRotationVector(turn);
            EXPECT_NEAR(norm(asVector(q)), 1.0, 3 * kEpsilon) << "seed " << seed;
            for (const double scale : {1e-8, 1.0, 1e8}) {
                const Vector v = random.vector(3, scale);
                // Some twenty roundings of terms of up to 4 * scale.
                EXPECT_LE(maxDifference(rotateByQuaternion(q, v), test::rotationMatrix(turn) * v),
                          20 * kEpsilon * scale)
                    << "seed " << seed << " angle " << angle;
            }
        }
    }
}

TEST(Quaternion, ProductIsTheTurnOneAfterTheOther) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        for (const double angle : kAngles) {
            const Vector turn = random.unitVector() * angle;
            const Quaternion p = quaternionFromRotationVector(turn);
            const Quaternion q = quaternionFromRotationVector(random.vector(3, 3.0));
            const Quaternion r = quaternionFromRotationVector(random.vector(3, 3.0));
            const Vector v = random.unitVector();
            EXPECT_LE(maxDifference(rotateByQuaternion(p * q, v),
                                    rotateByQuaternion(p, rotateByQuaternion(q, v))),
                      30 * kEpsilon)
                << "seed " << seed << " angle " << angle;
            EXPECT_LE(maxDifference(asVector((p * q) * r), asVector(p * (q * r))), 8 * kEpsilon);
            EXPECT_LE(maxDifference(asVector(p * quaternionFromRotationVector(turn * -1.0)),
                                    asVector(Quaternion())),
                      4 * kEpsilon);
            EXPECT_EQ(p * Quaternion(), p);
            EXPECT_EQ(Quaternion() * p, p);
        }
    }
}

TEST(Quaternion, RefusesVectorsOfOtherSizes) {
    EXPECT_NE(mathError([] { return quaternionFromRotationVector(Vector(2)); }), "no exception");
    EXPECT_NE(mathError([] { return rotateByQuaternion({}, Vector(4)); }), "no exception");
}

}  // namespace
}  // namespace tavocal
