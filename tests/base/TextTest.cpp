#include "base/Text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavocal::test {

TEST(TextTest, FixedHasSixDigits) {
    std::string text = "x=";
    // Half of the last digit lies just below the tie; 1 / 128 is one and goes to the even digit.
    for (const double value : {-0.0, -12.3456784, 0.9999995, 0.0000005, 1.0 / 128.0, 2345678.125,
                               HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")}) {
        appendFixed(text, value);
        text += ' ';
    }
    EXPECT_EQ(text,
              "x=-0.000000 -12.345678 1.000000 0.000000 0.007812 2345678.125000 inf -inf nan nan ");
    EXPECT_EQ(fixedText(-1.7976931348623157e308).size(), 317U);
}

TEST(TextTest, NarrowAndWideAreInverseForSingleBytes) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes.push_back(static_cast<char>(byte));
    }
    EXPECT_EQ(widen(bytes)[0xFF], L'\xFF');
    EXPECT_EQ(narrow(widen(bytes)), bytes);
    // The digits of other scripts must not become ours.
    EXPECT_EQ(narrow(L"1\x0661\xFF11\x0130\x100"), "1????");
}

TEST(TextTest, Utf8AtTheBordersOfItsLengths) {
    EXPECT_EQ(toUtf8(L"\x7F\x80\x7FF\x800\xE000\xFFFF\xD800\xDC00\xDBFF\xDFFF\U00010000\U0010FFFF"),
              "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
              "\xF4\x8F\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    // What is no character is replaced.
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(toUtf8(L"\xD800x\xDFFF\xDBFF\xE000\xD800"),
              replaced + "x" + replaced + replaced + "\xEE\x80\x80" + replaced);
    EXPECT_EQ(toUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), replaced);
}

TEST(TextTest, PartsAndForms) {
    EXPECT_EQ(lowerCase(std::string_view("AbZ@[`{09-\xC3\x84\0B", 14)),
              std::string("abz@[`{09-\xC3\x84\0b", 14));
    const unsigned char bytes[] = {0x00, 0x0F, 0xF0, 0xAB};
    EXPECT_EQ(hexText(bytes, 4), "000ff0ab");
    EXPECT_TRUE(startsWith("-x", "-") && startsWith("", ""));
    EXPECT_FALSE(startsWith("", "-") || startsWith("x-", "-"));
    EXPECT_TRUE(contains("Accelerometer_2", "_2") && !contains("Accelerometer2_", "_2"));
}

}  // namespace tavocal::test
