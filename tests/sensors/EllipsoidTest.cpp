#include "sensors/Ellipsoid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "numerics/NumericsTesting.h"

namespace tavocal::test {
namespace {

using Samples = std::vector<Sample>;

// The fit squares the samples and sums the squares of the squares, so a relative error of an
// element of the Gram matrix comes back some thousand times larger.
constexpr double kTolerance = 1e-8;

// Points center + shape * (unit vector).
Samples surface(RandomNumbers& random, const Matrix& shape, const Vector& center) {
    Samples samples;
    for (int i = 0; i < 400; ++i) {
        samples.push_back({10.0 * i, shape * random.unitVector() + center});
    }
    return samples;
}

// A rotation whose first column has no small element, so that all axes of the ellipsoid are in
// reach of the closed form.
Matrix reachableBasis(RandomNumbers& random) {
    for (;;) {
        const Matrix basis = rotationMatrix(random.vector(3, 3.0));
        const Vector first = absValues(column(basis, 0));
        if (*std::min_element(first.begin(), first.end()) > 0.2) {
            return basis;
        }
    }
}

TEST(Ellipsoid, CorrectsAnyEllipsoidToASphere) {
    for (std::uint64_t seed = 1; seed <= 10; ++seed) {
        for (const double scale : {1.0, 450.0, 5000.0}) {
            SCOPED_TRACE("seed " + std::to_string(seed) + " scale " + std::to_string(scale));
            RandomNumbers random(seed);
            const Matrix basis = reachableBasis(random);
            const Vector semiAxes = Vector{random.between(0.6, 0.8), random.between(0.95, 1.05),
                                           random.between(1.2, 1.5)} *
                                    scale;
            const Vector center = random.vector(3, 1.5 * scale);
            const Matrix shape = transpose(basis) * diagonal(semiAxes) * basis;
            const Samples samples = surface(random, shape, center);

            const Ellipsoid fit(samples);
            const double meanGain =
                (1.0 / semiAxes[0] + 1.0 / semiAxes[1] + 1.0 / semiAxes[2]) / 3.0;
            EXPECT_LT(maxDifference(fit.center, center), kTolerance * scale);
            EXPECT_NEAR(fit.meanGain / meanGain, 1.0, kTolerance);
            EXPECT_LT(fit.meanError(samples, 1.0 / fit.meanGain), kTolerance * scale);
            // It undoes the shape up to a factor, without a turn.
            EXPECT_LT(maxDifference(fit.correction * shape * fit.meanGain, identity(3)),
                      kTolerance);

            const Ellipsoid ofRadius(samples, 300.0);
            EXPECT_LT(ofRadius.meanError(samples, 300.0), 300.0 * kTolerance);
            EXPECT_NEAR(ofRadius.meanError(samples, 310.0), 10.0, 1e-3);
            EXPECT_EQ(ofRadius.correction, diagonal(ofRadius.axisGain) * ofRadius.axes);
            // Its gains ascend.
            EXPECT_LT(maxDifference(ofRadius.inverseAxisGain * 300.0,
                                    Vector{semiAxes[2], semiAxes[1], semiAxes[0]}),
                      kTolerance * scale);
        }
    }
}

TEST(Ellipsoid, WithoutCrossTermsKeepsTheOrderOfTheAxes) {
    // The ends of the axes and the corners in between: no product of two coordinates survives.
    Samples samples;
    const Vector axes{400.0, 500.0, 250.0};
    for (int i = 0; i < 27; ++i) {
        const Vector v{i % 3 - 1.0, i / 3 % 3 - 1.0, i / 9 - 1.0};
        if (dot(v, v) == 1.0 || dot(v, v) == 3.0) {
            samples.push_back({0.0, elementProduct(v, axes) / norm(v)});
        }
    }
    const Ellipsoid fit(samples);
    EXPECT_EQ(fit.axes, identity(3));
    EXPECT_LT(maxDifference(fit.inverseAxisGain / fit.meanGain, axes), 1e-9);
    // The least tilt sorts the gains.
    for (Sample& sample : samples) {
        sample.values = rotationMatrix({0.0, 0.0, 1e-6}) * sample.values;
    }
    const Ellipsoid tilted(samples);
    EXPECT_LT(maxDifference(tilted.inverseAxisGain / tilted.meanGain, {500.0, 400.0, 250.0}), 1e-9);
}

TEST(Ellipsoid, RefusesOtherSurfacesAndShortSamples) {
    Samples samples;
    RandomNumbers random(1);
    for (int i = 0; i < 200; ++i) {
        const double z = random.between(-2.0, 2.0);
        const double r = std::sqrt(1.0 + z * z);
        samples.push_back({0.0, {r * std::cos(i), r * std::sin(i), z}});
    }
    EXPECT_EQ(mathError([&] { const Ellipsoid fit(samples); }),
              "Math Error: The calculated eigen values of the ellipsoid are not correct");
    samples[5].values = {1.0, 2.0};
    for (const auto& action : {std::function<void()>([&] { const Ellipsoid bad(samples); }),
                               std::function<void()>([&] { Ellipsoid().meanError(samples, 1.0); }),
                               std::function<void()>([&] { Ellipsoid().circleCenter(samples); })}) {
        EXPECT_NE(mathError(action), "no exception");
    }
}

TEST(Ellipsoid, DegenerateCloudsNeitherCrashNorCountAsGood) {
    RandomNumbers random(3);
    std::vector<Samples> clouds(4);  // a plane, a line, a point, nothing
    for (int i = 0; i < 100; ++i) {
        const Vector direction = random.unitVector();
        clouds[0].push_back({0.0, {400.0 * direction[0], 400.0 * direction[1], 30.0}});
        clouds[1].push_back({0.0, Vector{1.0, 2.0, 3.0} * direction[0]});
        clouds[2].push_back({0.0, {100.0, 200.0, 300.0}});
    }
    for (const Samples& cloud : clouds) {
        const std::string failure = mathError([&] {
            const Ellipsoid fit(cloud, 1.0);
            EXPECT_FALSE(fit.meanError(cloud, 1.0) < 0.05 && norm(fit.center) < 1e4 &&
                         fit.axisGain[0] > 1.0 / 4000.0);
        });
        EXPECT_NE(failure, "");
    }
}

TEST(Ellipsoid, CircleCenterIsTheMiddleOfATurnInSpace) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        for (const double scale : {1.0, 300.0, 5000.0}) {
            SCOPED_TRACE("seed " + std::to_string(seed) + " scale " + std::to_string(scale));
            RandomNumbers random(seed);
            const Matrix basis = rotationMatrix(random.vector(3, 3.0));
            const Vector center = random.vector(3, 2.0 * scale);
            const double stretch = seed % 2 == 0 ? 1.2 : 1.0;
            Samples samples;
            for (int i = 0; i < 200; ++i) {  // less than a whole turn
                const Vector flat{std::cos(0.03 * i), stretch * std::sin(0.03 * i), 0.0};
                samples.push_back({10.0 * i, flat * scale * basis + center});
            }
            Ellipsoid fit;
            EXPECT_LT(maxDifference(fit.circleCenter(samples), center), kTolerance * scale);
            ASSERT_EQ(fit.axisGain.size(), 2);
            const double ratio = fit.axisGain[1] / fit.axisGain[0];
            EXPECT_NEAR(std::max(ratio, 1.0 / ratio), stretch, kTolerance);
            EXPECT_EQ(fit.center, Vector(3));
            EXPECT_EQ(fit.correction, identity(3));
        }
    }
    EXPECT_FALSE(std::isfinite(Ellipsoid().circleCenter(Samples(2, {0.0, ones3()}))[0]));
}

}  // namespace
}  // namespace tavocal::test
