#include "base/TextToNumber.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Failures.h"
#include "support/MessageOf.h"

namespace tavocal::test {

TEST(TextToNumberTest, IntegersTakeUpTheWholeText) {
    for (const char* text : {"12", "0012", "+12", " \t\n12"}) {
        EXPECT_EQ(parseInt(text), 12) << text;
    }
    EXPECT_TRUE(parseInt("") == 0 && parseInt("2147483647") == 2147483647);
    EXPECT_EQ(parseInt("-2147483648"), -2147483647 - 1);
    for (const char* text : {"2147483648", "-2147483649", "99999999999999999999", " ", "+", "-",
                             "+-1", "--1", "1 ", "12a", "a", "0x10", "1.5", "1e3"}) {
        EXPECT_EQ(messageOf<CalibrationException>([&] { parseInt(text); }),
                  "Conversion error. Value " + std::string(text) + " is not a valid number");
    }
    EXPECT_THROW(parseInt(std::string("1\0", 2)), CalibrationException);
}

TEST(TextToNumberTest, DoublesTakeUpTheWholeText) {
    for (const char* text : {"16", "+1.6e1", " \t16", "16.", "0x10", "160e-1"}) {
        EXPECT_EQ(parseDouble(text), 16.0) << text;
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
