#include "sampling/ReplayMerge.h"

#include <gtest/gtest.h>

namespace tavocal::test {
// Every sample comes exactly once, the earliest first, the later stream first at equal times.
TEST(ReplayMerge, GoesByTimeAndThenFromTheLastStream) {
    // The streams in the order in which their samples come; a null one is among them.
    const auto mergedOrder = [](const std::vector<std::vector<double>>& times) {
        std::vector<std::vector<Sample>> streams(times.size());
        std::vector<const std::vector<Sample>*> pointers;
        for (std::size_t i = 0; i < times.size(); ++i) {
            for (const double time : times[i]) {
                streams[i].push_back({time, {}});
            }
            pointers.push_back(&streams[i]);
        }
        pointers.push_back(nullptr);
        ReplayMerge merge(pointers);
        std::string order;
        for (std::size_t stream = 0; merge.next(stream) != nullptr && order.size() < 99;) {
            order += std::to_string(stream);
        }
        return order;
    };
    EXPECT_EQ(mergedOrder({{1, 3, 3, 9}, {2, 3}}), "011000");
    EXPECT_EQ(mergedOrder({{}, {0}, {0, 0}}), "221");
    // What lies before the sample taken last waits until its stream, or nothing else, is left.
    EXPECT_EQ(mergedOrder({{10, 5, 20}, {7, 12}}), "10100");
    EXPECT_EQ(mergedOrder({{10, 4, 4}, {30, 3}, {40, 4}}), "0122001");
    // Beyond 2147483647 ms nothing is compared, but for the first sample of all.
    EXPECT_EQ(mergedOrder({{1, 2147483647.0}, {2, 2147483650.0}}), "0101");
    EXPECT_EQ(mergedOrder({{1, 2147483648.0}, {2, 2147483649.0}}), "0110");
    EXPECT_EQ(mergedOrder({{3e9, 5e9}, {4e9}}), "001");
    std::size_t stream = 0;
    EXPECT_EQ(ReplayMerge({}).next(stream), nullptr);
}

}  // namespace tavocal::test
