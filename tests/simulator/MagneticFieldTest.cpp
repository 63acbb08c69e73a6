#include "simulator/MagneticField.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavocal::simulator {
namespace {

TEST(MagneticFieldTest, EarthPointsNorthAndDown) {
    const MagneticField field(500.0, 30.0);
    const Vec3 here = field.at({1.0, 2.0, 3.0}, 4.0);
    EXPECT_NEAR(norm(here - Vec3{0.0, 500.0 * std::sqrt(0.75), -250.0}), 0.0, 1e-9);
}

// On its axis the field of a dipole is twice that beside it, and both fall with the third power of
// the distance. A dipole of 1 A m2 makes 2 mG on its axis at a distance of 1 m.
TEST(MagneticFieldTest, DipoleFallsWithTheThirdPower) {
    MagneticField field(0.0, 0.0);
    field.addMagnet({{1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}});
    EXPECT_NEAR(norm(field.at({1.0, 0.0, 1.0}, 0.0) - Vec3{0.0, 0.0, 2.0}), 0.0, 1e-12);
    EXPECT_NEAR(norm(field.at({1.0, 0.0, 0.5}, 0.0) - Vec3{0.0, 0.0, 16.0}), 0.0, 1e-12);
    EXPECT_NEAR(norm(field.at({2.0, 0.0, 0.0}, 0.0) - Vec3{0.0, 0.0, -1.0}), 0.0, 1e-12);
    EXPECT_TRUE(std::isfinite(norm(field.at({1.0, 0.0, 0.0}, 0.0))));
}

TEST(MagneticFieldTest, MagnetComesAndGoesSmoothly) {
    MagneticField field(0.0, 0.0);
    Magnet magnet{{0.0, 0.0, 1.0}, {0.0, 0.0, 10.0}};
    magnet.begin = 1.0;
    const std::size_t name = field.addMagnet(magnet);
    field.removeMagnet(name, 2.0);
    EXPECT_EQ(norm(field.at({}, 0.99)), 0.0);
    EXPECT_NEAR(norm(field.at({}, 1.5)), 20.0, 1e-9);
    EXPECT_EQ(norm(field.at({}, 2.41)), 0.0);
    double before = 0.0;
    for (double t = 0.9; t < 2.5; t += 0.001) {
        const double now = norm(field.at({}, t));
        ASSERT_LT(std::abs(now - before), 0.1) << "at " << t;
        before = now;
    }
}

}  // namespace
}  // namespace tavocal::simulator
