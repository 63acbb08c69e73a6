#include "base/Clock.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>

namespace tavocal::test {

TEST(ClockTest, DateIsTheLocalMinuteWithoutLeadingZeros) {
    const std::string date = localDateText();
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    std::tm told{};
    ASSERT_EQ(std::sscanf(date.c_str(), "%d-%d-%d. %d:%d", &told.tm_year, &told.tm_mon,
                          &told.tm_mday, &told.tm_hour, &told.tm_min),
              5);
    for (std::size_t i = 1; i + 1 < date.size(); ++i) {
        EXPECT_FALSE(!isDigit(date[i - 1]) && date[i] == '0' && isDigit(date[i + 1])) << date;
    }
    told.tm_year -= 1900;
    told.tm_mon -= 1;
    told.tm_isdst = -1;
    EXPECT_NEAR(std::difftime(std::time(nullptr), std::mktime(&told)), 30.0, 31.0) << date;
}

}  // namespace tavocal::test
