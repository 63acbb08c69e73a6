#include "process/LightLevels.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "base/Failures.h"
#include "support/MessageOf.h"

namespace tavocal::test {
namespace {

TEST(LightLevels, RiseOrFallByThreeHundredAndMore) {
    const std::string close = "Invalid delta between light levels. Minimum delta is 300";
    const std::string turns =
        "Invalid delta between light levels. levels should be ascending or descending";
    const auto dark = [](const std::string& level) {
        return "Invalid light value " + level + ". Value should be bigger than 1(lux)";
    };
    struct Row {
        std::vector<int> levels;
        std::string failure;  // at the last one
    };
    for (const Row& row :
         {Row{{500, 800, 1100}, kNoFailure}, Row{{1100, 800, 500}, kNoFailure},
          Row{{1, 301, 601}, kNoFailure}, Row{{500, 799}, close}, Row{{500, 201}, close},
          Row{{500, 800, 600}, close}, Row{{500, 800, 800}, close}, Row{{500, 800, 300}, turns},
          Row{{800, 500, 900}, turns}, Row{{INT_MAX, 1, 1000}, turns}, Row{{0}, dark("0")},
          Row{{500, INT_MIN}, dark("-2147483648")}}) {
        SCOPED_TRACE(testing::PrintToString(row.levels));
        LightLevels series;
        for (std::size_t step = 0; step < row.levels.size(); ++step) {
            const std::string expected = step + 1 < row.levels.size() ? kNoFailure : row.failure;
            EXPECT_EQ(messageOf<CalibrationException>(
                          [&] { series.accept(static_cast<int>(step), row.levels[step]); }),
                      expected);
        }
    }
}

}  // namespace
}  // namespace tavocal::test
