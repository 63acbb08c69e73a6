#include "sensors/magnetic/Ellipsoid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "numerics/NumericsTesting.h"

namespace tavocal::test {
namespace {

// The fit squares the samples and sums the squares of the squares, so a relative error of an
// element of the Gram matrix comes back some thousand times larger.
constexpr double kTolerance = 1e-8;

TEST(Ellipsoid, CorrectsAnyEllipsoidToASphere) {
    forEachSeed([](RandomNumbers& random) {
        const double scale = std::pow(10.0, random.between(0.0, 4.0));
        Matrix basis = rotationMatrix(random.vector(3, 3.0));
        // The closed form of the axes needs a first column without small elements.
        while (std::min({std::fabs(basis[0][0]), std::fabs(basis[1][0]), std::fabs(basis[2][0])}) <
               0.2) {
            basis = rotationMatrix(random.vector(3, 3.0));
        }
        const Vector semiAxes = Vector{1.4, 1.0, random.between(0.6, 0.8)} * scale;
        const Vector center = random.vector(3, 1.5 * scale);
        const Matrix shape = transpose(basis) * diagonal(semiAxes) * basis;
        std::vector<Sample> samples;
        for (int i = 0; i < 300; ++i) {
            samples.push_back({10.0 * i, shape * random.unitVector() + center});
        }
        const Ellipsoid fit(samples);
        const double gain = (1.0 / semiAxes[0] + 1.0 / semiAxes[1] + 1.0 / semiAxes[2]) / 3.0;
        EXPECT_LT(maxDifference(fit.center, center), kTolerance * scale);
        EXPECT_NEAR(fit.meanGain / gain, 1.0, kTolerance);
        EXPECT_LT(maxDifference(fit.inverseAxisGain / gain, semiAxes), kTolerance * scale);
        // It undoes the shape up to a factor, without a turn.
        EXPECT_LT(maxDifference(fit.correction * shape * gain, identity(3)), kTolerance);

        const Ellipsoid ofRadius(samples, 300.0);
        EXPECT_LT(ofRadius.meanError(samples, 300.0), 300.0 * kTolerance);
        EXPECT_NEAR(ofRadius.meanError(samples, 310.0), 10.0, 1e-3);
        EXPECT_EQ(ofRadius.correction, diagonal(ofRadius.axisGain) * ofRadius.axes);
        EXPECT_LT(maxDifference(ofRadius.inverseAxisGain * 300.0, semiAxes), kTolerance * scale);
    });
}

TEST(Ellipsoid, WithoutCrossTermsKeepsTheOrderOfTheAxes) {
    // The ends of the axes and the corners in between: no product of two coordinates survives.
    std::vector<Sample> samples;
    const Vector axes{400.0, 500.0, 250.0};
    for (int i = 0; i < 27; i += 2) {
        const Vector v{i % 3 - 1.0, i / 3 % 3 - 1.0, i / 9 - 1.0};
        samples.push_back({0.0, elementProduct(v, axes) / norm(v)});
    }
    EXPECT_EQ(Ellipsoid(samples).axes, identity(3));
    EXPECT_LT(maxDifference(Ellipsoid(samples, 1.0).inverseAxisGain, axes), 1e-9);
    for (Sample& sample : samples) {
        sample.values = rotationMatrix({0.0, 0.0, 1e-6}) * sample.values;
    }
    EXPECT_LT(maxDifference(Ellipsoid(samples, 1.0).inverseAxisGain, {500, 400, 250}), 1e-9);
}

TEST(Ellipsoid, RefusesOtherSurfaces) {
    std::vector<Sample> samples;
    for (int i = 0; i < 200; ++i) {
        const double z = 0.02 * i - 2.0;
        const double r = std::sqrt(1.0 + z * z);
        samples.push_back({0.0, {r * std::cos(i), r * std::sin(i), z}});
    }
    EXPECT_EQ(mathError([&] { const Ellipsoid fit(samples); }),
              "Math Error: The calculated eigen values of the ellipsoid are not correct");
}

// ---- In a plane ----

// The largest error of the centre and the radii of an ellipse, as a fit to a part of it finds them.
double errorOf(double radius1, double radius2, double tilt) {
    const Vector center{30.0, -70.0};
    const Matrix turn(2, 2, {std::cos(tilt), -std::sin(tilt), std::sin(tilt), std::cos(tilt)});
    std::vector<Vector> points;
    for (int i = 0; i < 40; ++i) {
        points.push_back(turn * Vector{radius1 * std::cos(0.1 * i), radius2 * std::sin(0.1 * i)} +
                         center);
    }
    Ellipsoid fit;
    const double error = maxDifference(fit.fitEllipse(points), center);
    return std::max(error, maxDifference(fit.axisGain, Vector{radius1, radius2}));
}

TEST(EllipseFit, FindsCenterAndRadiiAlongTheEllipsesOwnAxes) {
    for (const auto& [r1, r2] : {std::pair(100.0, 120.0), {120.0, 100.0}}) {
        for (const double tilt : {0.0, 0.3, -0.7}) {
            EXPECT_LT(errorOf(r1, r2, tilt), 1e-6) << tilt;
        }
        // A tilt counts if its coefficient is above 0.001 of the others: 0.611 times the angle.
        for (const double sign : {1.0, -1.0}) {
            EXPECT_LT(errorOf(r1, r2, sign * 0.00165), 1e-6);
            EXPECT_GT(errorOf(r1, r2, sign * 0.00162), 1e-3);
        }
    }
}

TEST(EllipseFit, NamesTheConicsThatAreNone) {
    // Small whole numbers, for which the sums and the inverse are exact.
    const std::string tail = " found, fit_ellipse: Did not locate an ellipse";
    const std::vector<Vector> parabola{{-2, 4}, {-1, 1}, {0, 0}, {1, 1}, {2, 4}};
    EXPECT_EQ(mathError([&] { Ellipsoid().fitEllipse(parabola); }), "Math Error: Parabola" + tail);
    const std::vector<Vector> hyperbola{{1, 4}, {2, 2}, {4, 1}, {-1, -4}, {-2, -2}, {-4, -1}};
    EXPECT_EQ(mathError([&] { Ellipsoid().fitEllipse(hyperbola); }),
              "Math Error: Hyperbola" + tail);
}

TEST(Ellipsoid, CircleCenterIsTheMiddleOfATurnInSpace) {
    double stretch = 1.2;
    forEachSeed([&](RandomNumbers& random) {
        const Matrix basis = rotationMatrix(random.vector(3, 3.0)) * 300.0;
        const Vector center = random.vector(3, 600.0);
        stretch = 2.2 - stretch;
        std::vector<Sample> samples;
        for (int i = 0; i < 200; ++i) {  // less than a whole turn
            const Vector v{std::cos(0.03 * i), stretch * std::sin(0.03 * i), 0};
            samples.push_back({0.0, v * basis + center});
        }
        Ellipsoid fit;
        EXPECT_LT(maxDifference(fit.circleCenter(samples), center), 1e-6);
        const double ratio = fit.axisGain[1] / fit.axisGain[0];
        EXPECT_NEAR(std::max(ratio, 1.0 / ratio), stretch, kTolerance);
        EXPECT_EQ(fit.correction, identity(3));
    });
}

}  // namespace
}  // namespace tavocal::test
