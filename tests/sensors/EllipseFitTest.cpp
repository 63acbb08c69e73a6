#include "sensors/EllipseFit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/NumericsTesting.h"

namespace tavocal::test {
namespace {

const Vector kCenter{30.0, -70.0};

// A part of an ellipse that is turned by `tilt`.
std::vector<Vector> arc(double radius1, double radius2, double tilt, int count) {
    std::vector<Vector> points;
    for (int i = 0; i < count; ++i) {
        const double x = radius1 * std::cos(0.1 * i);
        const double y = radius2 * std::sin(0.1 * i);
        points.push_back(Vector{std::cos(tilt) * x - std::sin(tilt) * y,
                                std::sin(tilt) * x + std::cos(tilt) * y} +
                         kCenter);
    }
    return points;
}

// The largest error of the centre and of the radii.
double errorOf(double radius1, double radius2, double tilt, int count = 60) {
    const EllipseFit fit = fitEllipse(arc(radius1, radius2, tilt, count));
    return std::max(maxDifference(fit.center, kCenter),
                    maxDifference(fit.radii, Vector{radius1, radius2}));
}

TEST(EllipseFit, FindsCenterAndRadiiAlongTheEllipsesOwnAxes) {
    for (const double scale : {1.0, 5000.0}) {
        for (const double tilt : {0.0, 0.3, -0.7, 0.01, -0.002}) {
            EXPECT_LT(errorOf(scale, 1.2 * scale, tilt, 40), 1e-8 * scale) << "tilt " << tilt;
            EXPECT_LT(errorOf(1.2 * scale, scale, tilt), 1e-8 * scale) << "tilt " << tilt;
        }
    }
    // The radius along the axis that is nearer to x comes first.
    EXPECT_LT(maxDifference(fitEllipse(arc(100.0, 120.0, 1.0, 60)).radii, Vector{120.0, 100.0}),
              1e-9);
}

// The mixed coefficient is 2 sin t cos t (1/r1^2 - 1/r2^2), the smaller of its shares about 0.611
// t.
TEST(EllipseFit, ATiltOfLessThanAThousandthIsNone) {
    for (const double sign : {1.0, -1.0}) {
        for (const auto& [r1, r2] : {std::pair(100.0, 120.0), std::pair(120.0, 100.0)}) {
            EXPECT_LT(errorOf(r1, r2, sign * 0.00165, 40), 1e-8);
            EXPECT_GT(errorOf(r1, r2, sign * 0.00162, 40), 1e-3);
            EXPECT_LT(errorOf(r1, r2, sign * 0.00162, 40), 1.0);
        }
    }
}

TEST(EllipseFit, NamesTheConicsThatAreNone) {
    // Small whole numbers, for which the sums and the inverse are exact.
    EXPECT_EQ(mathError([] {
                  fitEllipse({{-2.0, 4.0}, {-1.0, 1.0}, {0.0, 0.0}, {1.0, 1.0}, {2.0, 4.0}});
              }),
              "Math Error: Parabola found, fit_ellipse: Did not locate an ellipse");
    std::vector<Vector> hyperbola;
    for (int i = -8; i <= 8; ++i) {
        const double t = 0.25 * i;
        hyperbola.push_back({std::cosh(t), std::sinh(t)});
        hyperbola.push_back({-std::cosh(t), std::sinh(t)});
    }
    EXPECT_EQ(mathError([&] { fitEllipse(hyperbola); }),
              "Math Error: Hyperbola found, fit_ellipse: Did not locate an ellipse");
    EXPECT_NE(mathError([] { fitEllipse({{1.0}}); }), "no exception");
}

}  // namespace
}  // namespace tavocal::test
