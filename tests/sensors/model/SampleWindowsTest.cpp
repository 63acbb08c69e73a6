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
    for (const auto& [t, window, first, last] : {std::tuple(10.0, 10.0, 0, 2),
                                                 {19.9, 0.0, 0, 0},
                                                 {20.0, 14.9, 2, 2},
                                                 {20.0, 15.0, 2, 3},
                                                 {0.0, 10.0, 0, 0},
                                                 {99.0, 1.0, 3, 3}}) {
        const IndexWindow found = findBufferRange(kSamples, t, window);
        EXPECT_EQ(std::pair(found.first, found.last), std::pair(first, last)) << t;
    }
    EXPECT_EQ(failureOf([] { findBufferRange(kSamples, 0.0, 9.9); }),
              "Failed to find buffer range. Inner error");
}

// The clock was set back behind the second sample and stood behind the third.
TEST(SampleWindowsTest, FindsSamplesOfAClockThatFalls) {
    const std::vector<Sample> samples = {{10.0, {}}, {90.0, {}}, {20.0, {}}, {20.0, {}}};
    for (const auto& [t, window, first, last] : {std::tuple(10.0, 5.0, 0, 0),
                                                 {10.0, 10.0, 0, 3},
                                                 {20.0, 0.0, 3, 3},
                                                 {-980.0, 1000.0, 0, 3},
                                                 {50.0, 40.0, 3, 3}}) {
        for (const IndexWindow found :
             {findBufferRange(samples, t, window), BufferRanges(samples).find(t, window)}) {
            EXPECT_EQ(std::pair(found.first, found.last), std::pair(first, last)) << t;
        }
    }
    for (const auto& [time, first] : {std::pair(9.0, 0), {10.0, 1}, {20.0, 1}, {90.0, 4}}) {
        EXPECT_EQ(firstIndexAbove(samples, time), first);
    }
}

TEST(SampleWindowsTest, MeasuresTheAxisThatMovesMost) {
    EXPECT_EQ(maxRange(kSamples, {0, 2}), 2.0);
    EXPECT_EQ(maxRange(kSamples, {0, 3}), 8.0);
    EXPECT_EQ(maxStd(kSamples, {0, 1}), 1.0);
    EXPECT_EQ(maxStd(kSamples, {1, 2}), 0.5);
    EXPECT_EQ(maxRange({}, {0, 0}), 0.0);
    for (const IndexWindow window : {IndexWindow{-1, 3}, IndexWindow{0, 4}, IndexWindow{4, 3}}) {
        for (const auto measure : {maxRange, maxStd}) {
            EXPECT_EQ(failureOf([&] { measure(kSamples, window); }), "invalid buffer range");
        }
    }
}

TEST(SampleWindowsTest, RangeOfAnAxisPassesNaNsOverOrTellsOfThem) {
    std::vector<Sample> samples = kSamples;
    EXPECT_EQ(axisRange(samples, {0, 2}, 1), 2.0);
    EXPECT_EQ(finiteAxisRange(samples, {0, 2}, 1), 2.0);
    samples[1].values[1] = kNotANumber;
    samples[3].values[1] = kInfinity;
    EXPECT_EQ(axisRange(samples, {0, 2}, 1), 2.0);
    EXPECT_EQ(axisRange(samples, {0, 3}, 1), kInfinity);
    EXPECT_TRUE(std::isnan(finiteAxisRange(samples, {0, 2}, 1)));
    EXPECT_TRUE(std::isnan(finiteAxisRange(samples, {2, 3}, 1)));
}

}  // namespace tavocal::test
