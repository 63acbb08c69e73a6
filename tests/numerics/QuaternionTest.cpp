#include "numerics/Quaternion.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(QuaternionTest, TurnsLikeTheRotationMatrixOneAfterTheOther) {
    forEachSeed([](RandomNumbers& random) {
        // At the identity, where a series would switch branches, and far off.
        for (const double angle : {0.0, 1e-300, 1e-8, 0.1, 1.0, 3.141592653589793, 6.0}) {
            const Vector turn = random.unitVector() * angle;
            const Vector next = random.vector(3, 3.0);
            const Quaternion p = quaternionFromRotationVector(turn);
            const Quaternion q = quaternionFromRotationVector(next);
            EXPECT_NEAR(norm(Vector{p.x, p.y, p.z, p.w}), 1.0, 3 * kEpsilon);
            EXPECT_TRUE(p * Quaternion() == p && Quaternion() * p == p) << angle;
            const Vector v = random.vector(3);
            const Vector turned = rotationMatrix(turn) * v;
            const Vector onward = rotationMatrix(next) * turned;
            EXPECT_LE(maxDifference(rotateByQuaternion(p, v), turned), 20 * kEpsilon);
            EXPECT_LE(maxDifference(rotateByQuaternion(q * p, v), onward), 40 * kEpsilon);
        }
    });
    EXPECT_EQ(quaternionFromRotationVector(Vector(3)), (Quaternion{0.0, 0.0, 0.0, 1.0}));
}

}  // namespace tavocal::test
