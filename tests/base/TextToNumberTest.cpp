#include "base/TextToNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/Failures.h"
#include "support/MessageOf.h"

namespace tavocal::test {

TEST(TextToNumberTest, IntegersTakeUpTheWholeText) {
    const struct {
        const char* text;
        std::int32_t value;
    } kRows[] = {{"", 0},
                 {"007", 7},
                 {"+12", 12},
                 {" \t\n-12", -12},
                 {"2147483647", std::numeric_limits<std::int32_t>::max()},
                 {"-2147483648", std::numeric_limits<std::int32_t>::min()}};
    for (const auto& row : kRows) {
        EXPECT_EQ(parseInt(row.text), row.value) << "'" << row.text << "'";
    }
    for (const char* text : {"2147483648", "-2147483649", "99999999999999999999", " ", "+", "-",
                             "+-1", "--1", "1 ", "12a", "a", "0x10", "1.5", "1e3"}) {
        EXPECT_EQ(messageOf<CalibrationException>([&] { parseInt(text); }),
                  "Conversion error. Value " + std::string(text) + " is not a valid number");
    }
    EXPECT_THROW(parseInt(std::string("1\0", 2)), CalibrationException);
}

TEST(TextToNumberTest, DoublesTakeUpTheWholeText) {
    const struct {
        const char* text;
        double value;
    } kRows[] = {
        {"+2.25e2", 225.0}, {" \t3", 3.0},
        {".5", 0.5},        {"5.", 5.0},
        {"0x10", 16.0},     {"1.7976931348623157e308", std::numeric_limits<double>::max()}};
    for (const auto& row : kRows) {
        EXPECT_EQ(parseDouble(row.text), row.value) << "'" << row.text << "'";
    }
    for (const char* text : {"", " ", ".", "-", "1,5", "1.5 ", "1.5.2", "e5", "abc", "1e"}) {
        EXPECT_EQ(messageOf<CalibrationException>([&] { parseDouble(text); }),
                  "Conversion error. Value " + std::string(text) + " is not a valid double");
    }
    EXPECT_THROW(parseDouble(std::string("1\0", 2)), CalibrationException);
    // What a reader of files has to expect.
    EXPECT_TRUE(std::isnan(parseDouble("nan")) && std::isinf(parseDouble("1e400")));
}

}  // namespace tavocal::test
