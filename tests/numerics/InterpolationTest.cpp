#include "numerics/Interpolation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::kEpsilon;
using test::RandomNumbers;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Interpolate, BeyondTheEndsIsTheEndValue) {
    const std::vector<double> xs = {1.0, 2.0, 4.0};
    const std::vector<double> ys = {10.0, 20.0, -5.0};
    for (const double x : {-kInfinity, 0.0, 1.0}) {
        EXPECT_EQ(interpolate(xs, ys, x), 10.0) << x;
    }
    for (const double x : {4.0, 5.0, kInfinity}) {
        EXPECT_EQ(interpolate(xs, ys, x), -5.0) << x;
    }
    EXPECT_EQ(interpolate(xs, ys, 1.5), 15.0);
    EXPECT_EQ(interpolate(xs, ys, 2.0), 20.0);
    EXPECT_EQ(interpolate(xs, ys, 3.0), 7.5);
}

TEST(Interpolate, GoesThroughEveryPointAndStraightBetween) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        std::vector<double> xs = {random.between(-10.0, 10.0)};
        std::vector<double> ys = {random.between(-1.0, 1.0)};
        for (int i = 0; i < static_cast<int>(seed); ++i) {
            xs.push_back(xs.back() + random.between(0.01, 5.0));
            ys.push_back(random.between(-1.0, 1.0));
        }
        for (std::size_t i = 0; i < xs.size(); ++i) {
            EXPECT_EQ(interpolate(xs, ys, xs[i]), ys[i]) << "seed " << seed;
        }
        for (std::size_t i = 0; i + 1 < xs.size(); ++i) {
            const double share = random.between(0.0, 1.0);
            const double x = xs[i] + share * (xs[i + 1] - xs[i]);
            // x, of some tens, is rounded; the slope of up to 200 carries that into y.
            EXPECT_NEAR(interpolate(xs, ys, x), ys[i] + share * (ys[i + 1] - ys[i]),
                        200 * 110 * kEpsilon)
                << "seed " << seed;
        }
    }
}

TEST(Interpolate, OfAJumpTakesTheLaterValue) {
    EXPECT_EQ(interpolate({0.0, 1.0, 1.0, 2.0}, {0.0, 1.0, 5.0, 6.0}, 1.0), 5.0);
    EXPECT_EQ(interpolate({0.0, 1.0, 1.0, 2.0}, {0.0, 1.0, 5.0, 6.0}, 0.5), 0.5);
}

TEST(Interpolate, BadTablesAndPlacesDoNoHarm) {
    EXPECT_TRUE(std::isnan(interpolate({}, {}, 1.0)));
    EXPECT_EQ(interpolate({3.0}, {7.0}, 99.0), 7.0);
    EXPECT_EQ(interpolate({3.0}, {7.0}, kNotANumber), 7.0);
    EXPECT_TRUE(std::isnan(interpolate({0.0, 1.0}, {0.0, 1.0}, kNotANumber)));
    EXPECT_EQ(interpolate({0.0, 1.0, 2.0}, {5.0, 6.0}, 1.5), 6.0);
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        std::vector<double> disordered;
        for (int i = 0; i < 20; ++i) {
            disordered.push_back(i % 7 == 3 ? kNotANumber : random.between(-1.0, 1.0));
        }
        interpolate(disordered, disordered, random.between(-1.0, 1.0));  // reads within bounds
    }
}

TEST(ResampleAt, AtItsOwnTimesIsTheSamplesThemselves) {
    std::vector<Sample> samples;
    RandomNumbers random(3);
    for (int i = 0; i < 50; ++i) {
        samples.push_back({10.0 * i + random.between(0.0, 9.0), random.vector(3)});
    }
    const std::vector<Vector> same = resampleAt(samples, samples);
    ASSERT_EQ(same.size(), samples.size());
    for (std::size_t i = 0; i < same.size(); ++i) {
        EXPECT_EQ(same[i], samples[i].values);
    }
}

TEST(ResampleAt, InterpolatesEachAxisInTheOrderOfTheTimes) {
    const std::vector<Sample> samples = {{0.0, {0.0, 10.0, -1.0}}, {10.0, {1.0, 20.0, -3.0}}};
    const std::vector<Vector> result = resampleAt(samples, {{5.0, {}}, {-1.0, {}}, {11.0, {}}});
    ASSERT_EQ(result.size(), 3u);
    EXPECT_EQ(result[0], (Vector{0.5, 15.0, -2.0}));
    EXPECT_EQ(result[1], samples[0].values);
    EXPECT_EQ(result[2], samples[1].values);
}

TEST(ResampleAt, MissingDataBecomesNaN) {
    const std::vector<Sample> oneAxis = {{0.0, {1.0}}, {10.0, {1.0}}};
    EXPECT_EQ(resampleAt(oneAxis, {{5.0, {}}})[0][0], 1.0);
    EXPECT_TRUE(std::isnan(resampleAt(oneAxis, {{5.0, {}}})[0][2]));
    EXPECT_TRUE(std::isnan(resampleAt({}, {{5.0, {}}})[0][0]));
    EXPECT_TRUE(resampleAt(oneAxis, {}).empty());
}

}  // namespace
}  // namespace tavocal
