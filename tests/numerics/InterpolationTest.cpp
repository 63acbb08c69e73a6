#include "numerics/Interpolation.h"

#include "numerics/NumericsTesting.h"

namespace tavocal::test {

TEST(InterpolationTest, GoesThroughEveryPointStraightBetweenAndNeverBeyond) {
    // A jump takes the later value, and what one list has more counts for nothing.
    const std::vector<double> xs = {1.0, 2.0, 4.0, 4.0, 8.0, 9.0, 10.0, 99.0};
    const std::vector<double> ys = {10.0, 20.0, -5.0, 0.0, 8.0, 9.0, 7.0};
    const Vector at{-kInfinity, 0.0, 1.0, 1.25, 2.0, 3.0, 4.0, 5.0, 8.0, 8.5, 9.75, 10.0, 50.0};
    const Vector expected{10.0, 10.0, 10.0, 12.5, 20.0, 7.5, 0.0, 2.0, 8.0, 8.5, 7.5, 7.0, 7.0};
    for (int i = 0; i < at.size(); ++i) {
        EXPECT_EQ(interpolate(xs, ys, at[i]), expected[i]) << at[i];
    }
    EXPECT_EQ(interpolate({3.0}, {7.0}, kNotANumber), 7.0);
    EXPECT_TRUE(std::isnan(interpolate({}, {}, 1.0)) &&
                std::isnan(interpolate(xs, ys, kNotANumber)));
}

TEST(InterpolationTest, SamplesAreLookedUpAxisByAxisInTheOrderOfTheTimes) {
    const std::vector<Sample> samples = {{0.0, {0.0, 10.0, -1.0}}, {10.0, {1.0, 20.0, -3.0}}};
    const std::vector<Vector> result = resampleAt(samples, {{5.0, {}}, {-1.0, {}}, {11.0, {}}});
    EXPECT_EQ(result,
              (std::vector<Vector>{{0.5, 15.0, -2.0}, samples[0].values, samples[1].values}));
    // An axis that a sample lacks is no number.
    const Vector oneAxis = resampleAt({{0.0, {1.0}}, {10.0, {1.0}}}, {{5.0, {}}})[0];
    EXPECT_TRUE(oneAxis[0] == 1.0 && std::isnan(oneAxis[1]) && std::isnan(oneAxis[2]));
}

}  // namespace tavocal::test
