#include "sensors/Ellipsoid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "numerics/MatrixInverse.h"
#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::mathError;
using test::maxDifference;
using test::RandomNumbers;
using test::rotationMatrix;

using Samples = std::vector<Sample>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A rotation whose first column has no small element, so that all axes of the ellipsoid are in
// reach of the closed form.
Matrix reachableBasis(RandomNumbers& random) {
    Matrix basis = rotationMatrix(random.vector(3, 3.0));
    while (std::min({std::fabs(basis[0][0]), std::fabs(basis[1][0]), std::fabs(basis[2][0])}) <
           0.2) {
        basis = rotationMatrix(random.vector(3, 3.0));
    }
    return basis;
}

// Points center + shape * (unit vector).
Samples surface(RandomNumbers& random, const Matrix& shape, const Vector& center, int count = 400) {
    Samples samples;
    for (int i = 0; i < count; ++i) {
        samples.push_back({10.0 * i, shape * random.unitVector() + center});
    }
    return samples;
}

Samples samplesOf(const std::vector<Vector>& values) {
    Samples samples;
    for (const Vector& value : values) {
        samples.push_back({0.0, value});
    }
    return samples;
}

// A turn about the third row of `basis`, which traces an ellipse along the two others.
Samples turn(const Matrix& basis, const Vector& center, double radius1, double radius2,
             int count = 300) {
    Samples samples;
    for (int i = 0; i < count; ++i) {
        const double angle = 2.0 * 3.141592653589793 * i / count;
        samples.push_back(
            {10.0 * i,
             Vector{radius1 * std::cos(angle), radius2 * std::sin(angle), 0.0} * basis + center});
    }
    return samples;
}

bool isFinite(const Vector& v) {
    return std::all_of(v.begin(), v.end(), [](double x) { return std::isfinite(x); });
}

// The fit squares the samples and sums the squares of the squares, so a relative error of an
// element of the Gram matrix comes back some thousand times larger.
constexpr double kFitTolerance = 1e-10;

TEST(Ellipsoid, OfASphereChangesNothingButTheCenter) {
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        for (const double scale : {1.0, 450.0, 5000.0}) {
            RandomNumbers random(seed);
            const Vector center = random.vector(3, scale);
            const Ellipsoid fit(surface(random, identity(3) * scale, center));
            EXPECT_LE(maxDifference(fit.center, center), kFitTolerance * scale) << "seed " << seed;
            EXPECT_LE(maxDifference(fit.axisGain, ones3()), kFitTolerance) << "seed " << seed;
            EXPECT_LE(maxDifference(fit.inverseAxisGain, ones3()), kFitTolerance);
            EXPECT_NEAR(fit.meanGain * scale, 1.0, kFitTolerance) << "seed " << seed;
        }
    }
}

TEST(Ellipsoid, CorrectsAnyEllipsoidToASphere) {
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        for (const double scale : {1.0, 450.0, 5000.0}) {
            RandomNumbers random(seed);
            const Matrix basis = reachableBasis(random);
            const Vector semiAxes = Vector{random.between(0.6, 0.8), random.between(0.95, 1.05),
                                           random.between(1.2, 1.5)} *
                                    scale;
            const Vector center = random.vector(3, 1.5 * scale);
            const Matrix shape = transpose(basis) * diagonal(semiAxes) * basis;
            const Samples samples = surface(random, shape, center);
            SCOPED_TRACE("seed " + std::to_string(seed) + " scale " + std::to_string(scale));

            const Ellipsoid fit(samples);
            EXPECT_LE(maxDifference(fit.center, center), 10 * kFitTolerance * scale);
            EXPECT_LE(fit.meanError(samples, 1.0 / fit.meanGain), 10 * kFitTolerance * scale);
            // It undoes the shape up to a factor, without a turn.
            EXPECT_LE(maxDifference(fit.correction * shape * fit.meanGain, identity(3)),
                      100 * kFitTolerance);
            const double meanGain =
                (1.0 / semiAxes[0] + 1.0 / semiAxes[1] + 1.0 / semiAxes[2]) / 3.0;
            EXPECT_NEAR(fit.meanGain / meanGain, 1.0, 10 * kFitTolerance);

            const Ellipsoid unit(samples, 1.0);
            EXPECT_LE(unit.meanError(samples, 1.0), 100 * kFitTolerance);
            // In the frame of the ellipsoid's axes, whose gains ascend.
            EXPECT_LE(maxDifference(unit.correction, diagonal(unit.axisGain) * unit.axes), 0.0);
            EXPECT_LE(maxDifference(
                          elementProduct(unit.axisGain, {semiAxes[2], semiAxes[1], semiAxes[0]}),
                          ones3()),
                      100 * kFitTolerance);
            EXPECT_NEAR(norm(Ellipsoid(samples, 300.0).apply(samples[7].values)), 300.0, 1e-5);
        }
    }
}

// The ends of the axes and the corners in between: no product of two coordinates survives in the
// sums.
Samples alignedCloud(double a, double b, double c) {
    Samples samples;
    for (const double sign : {-1.0, 1.0}) {
        for (const Vector& v : {Vector{a, 0, 0}, Vector{0, b, 0}, Vector{0, 0, c}}) {
            samples.push_back({0.0, v * sign});
        }
    }
    const double s = std::sqrt(1.0 / 3.0);
    for (int corner = 0; corner < 8; ++corner) {
        samples.push_back(
            {0.0, Vector{(corner & 1) != 0 ? a * s : -a * s, (corner & 2) != 0 ? b * s : -b * s,
                         (corner & 4) != 0 ? c * s : -c * s}});
    }
    return samples;
}

TEST(Ellipsoid, WithoutCrossTermsKeepsTheOrderOfTheAxes) {
    Samples samples = alignedCloud(400.0, 500.0, 250.0);
    const Ellipsoid fit(samples);
    EXPECT_EQ(fit.axes, identity(3));
    EXPECT_LE(maxDifference(fit.inverseAxisGain / fit.meanGain, Vector{400.0, 500.0, 250.0}), 1e-9);

    // The least tilt sorts the gains.
    const Matrix tilt = rotationMatrix({0.0, 0.0, 1e-6});
    for (Sample& sample : samples) {
        sample.values = tilt * sample.values;
    }
    const Ellipsoid tilted(samples);
    EXPECT_LE(maxDifference(tilted.inverseAxisGain / tilted.meanGain, Vector{500.0, 400.0, 250.0}),
              1e-9);
}

TEST(Ellipsoid, DefaultIsTheUnitSphere) {
    const Ellipsoid fit;
    EXPECT_EQ(fit.apply({1.0, -2.0, 3.0}), (Vector{1.0, -2.0, 3.0}));
    EXPECT_EQ(fit.meanGain, 1.0);
}

TEST(Ellipsoid, RefusesAHyperboloid) {
    Samples samples;
    RandomNumbers random(1);
    for (int i = 0; i < 200; ++i) {
        const double angle = random.between(0.0, 6.28);
        const double z = random.between(-2.0, 2.0);
        const double r = std::sqrt(1.0 + z * z);
        samples.push_back({0.0, {r * std::cos(angle), r * std::sin(angle), z}});
    }
    EXPECT_EQ(mathError([&] { const Ellipsoid fit(samples); }),
              "Math Error: The calculated eigen values of the ellipsoid are not correct");
}

TEST(Ellipsoid, DegenerateCloudsNeitherCrashNorCountAsGood) {
    RandomNumbers random(3);
    std::vector<Samples> clouds(5);
    for (int i = 0; i < 100; ++i) {
        const Vector direction = random.unitVector();
        clouds[0].push_back({0.0, {400.0 * direction[0], 400.0 * direction[1], 30.0}});  // plane
        clouds[1].push_back({0.0, Vector{1.0, 2.0, 3.0} * direction[0]});                // line
        clouds[2].push_back({0.0, {100.0, 200.0, 300.0}});                               // point
        clouds[3].push_back({0.0, direction * (i == 50 ? kNaN : 400.0)});
    }
    for (const Samples& cloud : clouds) {  // the last one is empty
        try {
            const Ellipsoid fit(cloud, 1.0);
            const double error = fit.meanError(cloud, 1.0);
            EXPECT_FALSE(isFinite(fit.center) && isFinite(fit.axisGain) && error < 0.05 &&
                         fit.axisGain[0] > 1.0 / 4000.0);
        } catch (const MathException&) {
        }
    }
}

TEST(Ellipsoid, ReadsTheFirstThreeValuesAndAsksForThem) {
    RandomNumbers random(1);
    Samples samples = surface(random, identity(3), Vector(3));
    const Ellipsoid fit(samples);
    for (Sample& sample : samples) {
        sample.values = {sample.values[0], sample.values[1], sample.values[2], 1e6};
    }
    EXPECT_EQ(Ellipsoid(samples).correction, fit.correction);
    samples[5].values = {1.0, 2.0};
    EXPECT_NE(mathError([&] { const Ellipsoid bad(samples); }), "no exception");
    EXPECT_NE(mathError([&] { fit.meanError(samples, 1.0); }), "no exception");
    EXPECT_NE(mathError([&] { Ellipsoid().circleCenter(samples); }), "no exception");
    EXPECT_NE(mathError([&] { Ellipsoid().fitEllipse({{1.0}}); }), "no exception");
}

// ---- In a plane ----

TEST(CircleCenter, FindsTheMiddleOfATurnInSpace) {
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        for (const double scale : {1.0, 300.0, 5000.0}) {
            RandomNumbers random(seed);
            const Matrix basis = rotationMatrix(random.vector(3, 3.0));
            const Vector center = random.vector(3, 2.0 * scale);
            Ellipsoid fit;
            EXPECT_LE(maxDifference(fit.circleCenter(turn(basis, center, scale, scale)), center),
                      kFitTolerance * scale)
                << "seed " << seed;
            EXPECT_LE(maxDifference(fit.axisGain, Vector{scale, scale}), kFitTolerance * scale);
            EXPECT_LE(
                maxDifference(fit.circleCenter(turn(basis, center, scale, 1.2 * scale)), center),
                kFitTolerance * scale)
                << "seed " << seed;
            const double ratio = fit.axisGain[1] / fit.axisGain[0];
            EXPECT_NEAR(std::max(ratio, 1.0 / ratio), 1.2, kFitTolerance) << "seed " << seed;
            EXPECT_EQ(fit.center, Vector(3));
            EXPECT_EQ(fit.correction, identity(3));
        }
    }
}

TEST(CircleCenter, OfTooFewSamplesIsNoNumber) {
    for (const Samples& samples :
         {Samples{}, samplesOf({{1.0, 2.0, 3.0}}), samplesOf({{1.0, 2.0, 3.0}, {3.0, 2.0, 1.0}})}) {
        EXPECT_FALSE(isFinite(Ellipsoid().circleCenter(samples)));
    }
    EXPECT_FALSE(isFinite(Ellipsoid().circleCenter(Samples(30, Sample{0.0, {1.0, 2.0, 3.0}}))));
}

std::vector<Vector> ellipse(double radius1, double radius2, double tilt, const Vector& center) {
    std::vector<Vector> points;
    for (int i = 0; i < 60; ++i) {
        const double x = radius1 * std::cos(0.1 * i);
        const double y = radius2 * std::sin(0.1 * i);
        points.push_back(Vector{std::cos(tilt) * x - std::sin(tilt) * y,
                                std::sin(tilt) * x + std::cos(tilt) * y} +
                         center);
    }
    return points;
}

TEST(FitEllipse, FindsCenterAndRadiiOfTiltedAndUprightEllipses) {
    const Vector center{30.0, -70.0};
    for (const double tilt : {0.0, 0.0001, 0.3, -0.7}) {
        Ellipsoid fit;
        EXPECT_LE(maxDifference(fit.fitEllipse(ellipse(100.0, 120.0, tilt, center)), center), 1e-2)
            << "tilt " << tilt;
        EXPECT_LE(maxDifference(fit.axisGain, Vector{100.0, 120.0}), 1e-2) << "tilt " << tilt;
    }
    // The radius along the axis that is nearer to x comes first.
    Ellipsoid fit;
    fit.fitEllipse(ellipse(100.0, 120.0, 1.0, center));
    EXPECT_LE(maxDifference(fit.axisGain, Vector{120.0, 100.0}), 1e-9);
}

TEST(FitEllipse, NamesTheConicsThatAreNone) {
    // Small whole numbers, for which the sums and the inverse are exact.
    EXPECT_EQ(
        mathError([] {
            Ellipsoid().fitEllipse({{-2.0, 4.0}, {-1.0, 1.0}, {0.0, 0.0}, {1.0, 1.0}, {2.0, 4.0}});
        }),
        "Math Error: Parabola found, fit_ellipse: Did not locate an ellipse");
    std::vector<Vector> hyperbola;
    for (int i = -8; i <= 8; ++i) {
        const double t = 0.25 * i;
        hyperbola.push_back({std::cosh(t), std::sinh(t)});
        hyperbola.push_back({-std::cosh(t), std::sinh(t)});
    }
    EXPECT_EQ(mathError([&] { Ellipsoid().fitEllipse(hyperbola); }),
              "Math Error: Hyperbola found, fit_ellipse: Did not locate an ellipse");
}

}  // namespace
}  // namespace tavocal
