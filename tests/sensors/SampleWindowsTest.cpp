#include "sensors/SampleWindows.h"

#include <gtest/gtest.h>

#include "sensors/InertialBench.h"

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
    struct Case {
        double t, window;
        int first, last;
    };
    for (const Case& c : {Case{10.0, 10.0, 0, 2}, Case{19.9, 0.0, 0, 0}, Case{20.0, 14.9, 2, 2},
                          Case{20.0, 15.0, 2, 3}, Case{0.0, 10.0, 0, 0}, Case{99.0, 1.0, 3, 3}}) {
        const IndexWindow found = findBufferRange(kSamples, c.t, c.window);
        EXPECT_EQ(std::pair(found.first, found.last), std::pair(c.first, c.last)) << c.t;
    }
    EXPECT_EQ(messageOf<CalibrationException>([] { findBufferRange(kSamples, 0.0, 9.9); }),
              "Failed to find buffer range. Inner error");
}

TEST(SampleWindowsTest, MeasuresTheAxisThatMovesMost) {
    EXPECT_EQ(maxRange(kSamples, {0, 2}), 2.0);
    EXPECT_EQ(maxRange(kSamples, {0, 3}), 8.0);
    EXPECT_EQ(maxStd(kSamples, {0, 1}), 1.0);
    EXPECT_EQ(maxStd(kSamples, {1, 2}), 0.5);
    EXPECT_EQ(maxRange({}, {0, 0}), 0.0);
    for (const IndexWindow window : {IndexWindow{-1, 3}, IndexWindow{0, 4}, IndexWindow{4, 3}}) {
        for (const auto measure : {maxRange, maxStd}) {
            EXPECT_EQ(messageOf<CalibrationException>([&] { measure(kSamples, window); }),
                      "invalid buffer range");
        }
    }
}

}  // namespace tavocal::test
