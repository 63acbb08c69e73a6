#include "base/Clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <ctime>

namespace tavocal::test {

TEST(ClockTest, DateIsTheLocalMinuteWithoutLeadingZeros) {
    const std::string date = localDateText();
    std::tm told{};
    std::sscanf(date.c_str(), "%d-%d-%d. %d:%d", &told.tm_year, &told.tm_mon, &told.tm_mday,
                &told.tm_hour, &told.tm_min);
    const auto text = [](int number) { return std::to_string(number); };
    EXPECT_EQ(date, text(told.tm_year) + "-" + text(told.tm_mon) + "-" + text(told.tm_mday) + ". " +
                        text(told.tm_hour) + ":" + text(told.tm_min));
    told.tm_year -= 1900;
    told.tm_mon -= 1;
    told.tm_isdst = -1;
    EXPECT_NEAR(std::difftime(std::time(nullptr), std::mktime(&told)), 30.0, 31.0) << date;
}

// The one clock that nobody sets back.
TEST(ClockTest, TimeIsThatOfTheSteadyClockInMilliseconds) {
    const std::chrono::duration<double, std::milli> steady =
        std::chrono::steady_clock::now().time_since_epoch();
    EXPECT_NEAR(static_cast<double>(currentTimeMs()), steady.count(), 1000.0);
}

}  // namespace tavocal::test
