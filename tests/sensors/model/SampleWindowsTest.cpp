#include "sensors/model/SampleWindows.h"

#include "support/InertialBench.h"

namespace tavocal::test {

const std::vector<Sample> kSamples = {{10.0, {0.0, 4.0, 1.0}},
                                      {20.0, {1.0, 2.0, 1.0}},
                                      {20.0, {0.0, 2.0, 1.0}},
                                      {35.0, {-7.0, 0.0, 1.0}}};

TEST(SampleWindowsTest, FindsSamplesByTime) {
    for (const auto& [index, interval] :
         {std::pair(-1, 0.0), {0, 0.0}, {1, 10.0}, {2, 0.0}, {3, 15.0}, {4, 0.0}}) {
        EXPECT_EQ(intervalBefore(kSamples, index), interval);
    }
}

// Also of a clock that was set back behind the second sample.
TEST(SampleWindowsTest, FindsTheFirstLaterSample) {
    const std::vector<Sample> samples = {{10.0, {}}, {90.0, {}}, {20.0, {}}, {99.0, {}}};
    for (const auto& [time, first] :
         {std::pair(9.0, 0), {10.0, 1}, {20.0, 1}, {90.0, 3}, {99, 4}}) {
        EXPECT_EQ(firstIndexAbove(samples, time), first);
    }
}

TEST(SampleWindowsTest, RangeOfAnAxisTellsOfNaNs) {
    std::vector<Sample> samples = kSamples;
    EXPECT_EQ(finiteAxisRange(samples, {0, 2}, 1), 2.0);
    EXPECT_EQ(finiteAxisRange(samples, {0, 3}, 0), 8.0);
    samples[1].values[1] = kNotANumber;
    samples[3].values[1] = kInfinity;
    EXPECT_TRUE(std::isnan(finiteAxisRange(samples, {0, 2}, 1)));
    EXPECT_TRUE(std::isnan(finiteAxisRange(samples, {2, 3}, 1)));
}

}  // namespace tavocal::test
