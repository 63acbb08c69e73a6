#include "numerics/Statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "numerics/NumericsTesting.h"

namespace tavocal {
namespace {

using test::kEpsilon;
using test::RandomNumbers;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

std::vector<Sample> samplesOf(const std::vector<Vector>& values) {
    std::vector<Sample> samples;
    for (const Vector& v : values) {
        samples.push_back({10.0 * static_cast<double>(samples.size()), v});
    }
    return samples;
}

TEST(Statistics, OfTheEmptyListAreZero) {
    EXPECT_EQ(mean({}), 0.0);
    EXPECT_EQ(stdDev({}), 0.0);
    EXPECT_EQ(median({}), 0.0);
}

TEST(Statistics, MeanAndDeviationShiftAndScaleWithTheirValues) {
    EXPECT_EQ(mean({1.0, 2.0, 6.0}), 3.0);
    EXPECT_EQ(stdDev({1.0, 3.0, 1.0, 3.0}), 1.0);
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        RandomNumbers random(seed);
        std::vector<double> values;
        std::vector<double> moved;
        for (int i = 0; i < 100; ++i) {
            values.push_back(random.between(-1.0, 1.0));
            moved.push_back(10.0 + 1e-3 * values.back());
        }
        EXPECT_NEAR(mean(moved), 10.0 + 1e-3 * mean(values), 100 * 10 * kEpsilon) << seed;
        // The variance comes out of squares near 100, summed a hundred times.
        const double variance = 1e-6 * stdDev(values) * stdDev(values);
        EXPECT_NEAR(stdDev(moved) * stdDev(moved), variance, 100 * 100 * kEpsilon) << seed;
    }
}

TEST(Statistics, DeviationOfEqualValuesIsNoRootOfARoundingError) {
    // The mean square of these is below the square of their mean, by rounding.
    EXPECT_EQ(stdDev({0.1, 0.1, 0.1}), 0.0);
    EXPECT_TRUE(std::isnan(stdDev({0.1, kNotANumber})));
}

TEST(Statistics, MedianOfAxesSortsEachAxisByItself) {
    const std::vector<Sample> samples =
        samplesOf({{10.0, 1.0}, {1.0, 2.0}, {3.0, -5.0}, {2.0, 7.0}, {99.0, 99.0}});
    EXPECT_EQ(medianOfAxes(samples, 0, 3), (Vector{2.5, 1.5}));
    EXPECT_EQ(medianOfAxes(samples, 0, 2), (Vector{3.0, 1.0}));
    EXPECT_EQ(medianOfAxes(samples, 2, 2), (Vector{3.0, -5.0}));
    EXPECT_EQ(medianOfAxes(samples, 3, 2), Vector());
}

TEST(Statistics, MedianEqualsTheMiddleOfTheSortedValues) {
    RandomNumbers random(7);
    std::vector<Vector> values;
    for (int i = 0; i < 40; ++i) {
        // Rounded, so that equal values occur.
        values.push_back({std::round(random.between(-10.0, 10.0))});
    }
    const std::vector<Sample> samples = samplesOf(values);
    for (int first = 0; first < 40; ++first) {
        for (int last = first; last < 40; ++last) {
            std::vector<double> sorted;
            for (int i = first; i <= last; ++i) {
                sorted.push_back(values[static_cast<std::size_t>(i)][0]);
            }
            std::sort(sorted.begin(), sorted.end());
            const std::size_t n = sorted.size();
            const double expected = (sorted[(n - 1) / 2] + sorted[n / 2]) / 2;
            ASSERT_EQ(medianOfAxes(samples, first, last), Vector{expected})
                << first << ".." << last;
        }
    }
}

TEST(Statistics, MedianOfAxesSurvivesBadRangesAndSamples) {
    const std::vector<Sample> samples = samplesOf({{1.0, 10.0}, {2.0}, {3.0, 30.0, 300.0}});
    EXPECT_EQ(medianOfAxes(samples, 0, 2), (Vector{2.0, 20.0}));
    EXPECT_EQ(medianOfAxes(samples, -5, 99), (Vector{2.0, 20.0}));
    EXPECT_EQ(medianOfAxes(samples, 3, 5), Vector());
    EXPECT_EQ(medianOfAxes(samples, -5, -1), Vector());
    EXPECT_EQ(medianOfAxes({}, 0, 0), Vector());
    EXPECT_EQ(
        medianOfAxes(samples, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()),
        (Vector{2.0, 20.0}));
}

TEST(Statistics, NaNsSortBehindEverything) {
    EXPECT_EQ(median({kNotANumber, 1.0, kNotANumber, 3.0, 2.0}), 3.0);
    EXPECT_TRUE(std::isnan(median({kNotANumber, 1.0, kNotANumber})));

    std::vector<double> values(100, kNotANumber);
    for (std::size_t i = 0; i < values.size(); i += 3) {
        values[i] = -static_cast<double>(i);
    }
    std::sort(values.begin(), values.end(), ordersBefore);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.begin() + 34));
    EXPECT_EQ(std::count_if(values.begin() + 34, values.end(), [](double x) { return x != x; }),
              66);
    EXPECT_TRUE(ordersBefore(-0.0, 0.0));
    EXPECT_FALSE(ordersBefore(0.0, -0.0));
}

}  // namespace
}  // namespace tavocal
