#include "base/TextToNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/Failures.h"

namespace tavocal::test {

namespace {

template <typename Parse>
std::string failureOf(Parse parse, const std::string& text) {
    try {
        parse(text);
    } catch (const CalibrationException& failure) {
        return failure.what();
    }
    return "accepted";
}

}  // namespace

TEST(TextToNumberTest, IntegersTakeUpTheWholeText) {
    const struct {
        const char* text;
        std::int32_t value;
    } kRows[] = {
        {"", 0},
        {"0", 0},
        {"-0", 0},
        {"007", 7},
        {"+12", 12},
        {" \t\n-12", -12},
        {"2147483647", std::numeric_limits<std::int32_t>::max()},
        {"-2147483648", std::numeric_limits<std::int32_t>::min()},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(parseInt(row.text), row.value) << "'" << row.text << "'";
    }
    for (const char* text : {"2147483648", "-2147483649", "99999999999999999999", " ", "+", "-",
                             "+-1", "--1", "1 ", "12a", "a", "0x10", "1.5", "1e3"}) {
        EXPECT_EQ(failureOf(parseInt, text),
                  "Conversion error. Value " + std::string(text) + " is not a valid number");
    }
    EXPECT_NE(failureOf(parseInt, std::string("1\0", 2)), "accepted");
}

TEST(TextToNumberTest, DoublesTakeUpTheWholeText) {
    const struct {
        const char* text;
        double value;
    } kRows[] = {
        {"0", 0.0},
        {"-1.5", -1.5},
        {"+2.25e2", 225.0},
        {" \t3", 3.0},
        {".5", 0.5},
        {"5.", 5.0},
        {"0.1", 0.1},
        {"0x10", 16.0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(parseDouble(row.text), row.value) << "'" << row.text << "'";
    }
    for (const char* text : {"", " ", ".", "-", "1,5", "1.5 ", "1.5.2", "e5", "abc", "1e"}) {
        EXPECT_EQ(failureOf(parseDouble, text),
                  "Conversion error. Value " + std::string(text) + " is not a valid double");
    }
    EXPECT_NE(failureOf(parseDouble, std::string("1\0", 2)), "accepted");
}

// What a reader of numbers has to expect from the texts of files.
TEST(TextToNumberTest, DoublesThatAreNoOrdinaryNumbers) {
    EXPECT_TRUE(std::isnan(parseDouble("nan")));
    EXPECT_TRUE(std::isinf(parseDouble("-inf")));
    EXPECT_TRUE(std::isinf(parseDouble("1e400")));
    EXPECT_EQ(parseDouble("1e-400"), 0.0);
}

}  // namespace tavocal::test
