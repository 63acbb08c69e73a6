#include "sensors/light/LightLevels.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/Outcome.h"

namespace tavocal::test {
namespace {

TEST(LightLevels, RiseOrFallByThreeHundredAndMore) {
    const std::string close = "Invalid delta between light levels. Minimum delta is 300";
    const std::string turns =
        "Invalid delta between light levels. levels should be ascending or descending";
    const auto dark = [](const std::string& level) {
        return "Invalid light value " + level + ". Value should be bigger than 1(lux)";
    };
    using Row = std::pair<std::vector<int>, std::string>;
    for (const auto& [levels, failure] :  // at the last one
         {Row{{500, 800, 1100}, kNoFailure}, Row{{1100, 800, 500}, kNoFailure},
          Row{{1, 301, 601}, kNoFailure}, Row{{500, 799}, close}, Row{{500, 201}, close},
          Row{{500, 800, 600}, close}, Row{{500, 800, 800}, close}, Row{{500, 800, 300}, turns},
          Row{{800, 500, 900}, turns}, Row{{INT_MAX, 1, 1000}, turns}, Row{{0}, dark("0")},
          Row{{500, INT_MIN}, dark("-2147483648")}}) {
        LightLevels series;
        for (std::size_t step = 0; step + 1 < levels.size(); ++step) {
            series.accept(levels[step]);
        }
        // A refused level isn't taken.
        for (int i = 0; i < (failure == kNoFailure ? 1 : 2); ++i) {
            EXPECT_EQ(failureOf([&, last = levels.back()] { series.accept(last); }), failure)
                << testing::PrintToString(levels);
        }
    }
    EXPECT_FALSE(levelsTooClose({INT_MIN, INT_MAX}));
}

}  // namespace
}  // namespace tavocal::test
