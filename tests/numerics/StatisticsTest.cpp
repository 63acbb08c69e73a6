#include "numerics/Statistics.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(StatisticsTest, MeanAndDeviation) {
    EXPECT_EQ(mean({1.0, 2.0, 6.0}), 3.0);
    EXPECT_EQ(stdDev({1.0, 5.0, 1.0, 5.0}), 2.0);
    EXPECT_TRUE(mean({}) == 0.0 && variance({}) == 0.0 && stdDev({}) == 0.0 && median({}) == 0.0);
    // The mean square of these is below the square of their mean, by rounding.
    EXPECT_TRUE(variance({0.1, 0.1, 0.1}) < 0.0 && stdDev({0.1, 0.1, 0.1}) == 0.0);
}

TEST(StatisticsTest, MedianIsTheMiddleOfTheSortedValues) {
    EXPECT_EQ(median({9.0, -1.0, 4.0, 1.0, 2.0, 3.0, 8.0, 0.0}), 2.5);
    // Those that are no number stand behind everything.
    EXPECT_EQ(median({kNotANumber, 1.0, kNotANumber, 3.0, 2.0}), 3.0);
    EXPECT_TRUE(std::isnan(median({kNotANumber, 1.0, kNotANumber})));
    EXPECT_TRUE(ordersBefore(-0.0, 0.0) && ordersBefore(0.0, 1.0) &&
                ordersBefore(1.0, kNotANumber));
    EXPECT_FALSE(ordersBefore(0.0, -0.0) || ordersBefore(-0.0, -0.0) || ordersBefore(1.0, 0.0) ||
                 ordersBefore(kNotANumber, 1.0) || ordersBefore(kNotANumber, kNotANumber));
}

TEST(StatisticsTest, MedianOfAxesSortsEachAxisOfARange) {
    std::vector<Sample> samples;
    for (const Vector& values : {Vector{10.0, 1.0}, {1.0, 2.0}, {3.0, -5.0}, {2.0, 7.0}, {99.0}}) {
        samples.push_back({0.0, values});
    }
    const auto range = [&](int first, int last) { return medianOfAxes(samples, first, last); };
    EXPECT_EQ(range(0, 3), (Vector{2.5, 1.5}));
    // An axis that a sample lacks is passed over; what lies outside is cut off.
    EXPECT_EQ(range(3, 4), (Vector{50.5, 7.0}));
    EXPECT_EQ(range(4, 4), Vector{99.0});
    EXPECT_EQ(range(-5, 99), (Vector{3.0, 1.5}));
    EXPECT_TRUE(range(3, 2).empty() && range(5, 7).empty() && range(-5, -1).empty());
}

}  // namespace tavocal::test
