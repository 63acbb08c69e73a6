#include "base/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavocal::test {

TEST(TextTest, FixedHasSixDigits) {
    const struct {
        double value;
        const char* text;
    } kRows[] = {
        {-0.0, "-0.000000"},
        {-12.3456784, "-12.345678"},
        {0.9999995, "1.000000"},
        {0.0000005, "0.000000"},    // the double lies just below the tie
        {1.0 / 128.0, "0.007812"},  // an exact tie goes to the even digit
        {123456789.125, "123456789.125000"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {-std::numeric_limits<double>::quiet_NaN(), "nan"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(fixedText(row.value), row.text);
    }
    std::string text = "x=";
    appendFixed(text, -0.25);
    EXPECT_EQ(text, "x=-0.250000");
    const std::string longest = fixedText(std::numeric_limits<double>::lowest());
    EXPECT_EQ(longest.size(), 317U);
    EXPECT_EQ(longest.substr(0, 18), "-17976931348623157");
}

TEST(TextTest, LowerCaseTouchesNothingButLetters) {
    EXPECT_EQ(lowerCase("AbZ@[`{09-"), "abz@[`{09-");
    EXPECT_EQ(lowerCase("\xC3\x84"), "\xC3\x84");
    EXPECT_EQ(lowerCase(std::string_view("A\0B", 3)), std::string("a\0b", 3));
}

TEST(TextTest, NarrowAndWideAreInverseForSingleBytes) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes.push_back(static_cast<char>(byte));
    }
    const std::wstring wide = widen(bytes);
    EXPECT_EQ(wide[0xFF], L'\xFF');
    EXPECT_EQ(narrow(wide), bytes);
    // The digits of other scripts must not become ours.
    EXPECT_EQ(narrow(L"1\x0661\xFF11\x0130"), "1???");
}

TEST(TextTest, Utf8AtTheBordersOfItsLengths) {
    const struct {
        std::wstring wide;
        const char* utf8;
    } kRows[] = {
        {L"\x7F", "\x7F"},
        {L"\x80", "\xC2\x80"},
        {L"\x7FF", "\xDF\xBF"},
        {L"\x800", "\xE0\xA0\x80"},
        {L"\xFFFF", "\xEF\xBF\xBF"},
        {L"\xD800\xDC00", "\xF0\x90\x80\x80"},
        {L"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},
        {L"\U00010000", "\xF0\x90\x80\x80"},
        {L"\xE000", "\xEE\x80\x80"},
        // What is no character is replaced.
        {L"\xD800", "\xEF\xBF\xBD"},
        {L"\xD800x", "\xEF\xBF\xBDx"},
        {L"\xDBFF\xE000", "\xEF\xBF\xBD\xEE\x80\x80"},
        {L"\xDFFF\xD800", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {{static_cast<wchar_t>(0x110000)}, "\xEF\xBF\xBD"},
        {{static_cast<wchar_t>(0x10FFFF)}, "\xF4\x8F\xBF\xBF"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(toUtf8(row.wide), row.utf8);
    }
}

TEST(TextTest, HexHasTwoDigitsForEachByte) {
    const unsigned char bytes[] = {0x00, 0x0F, 0xF0, 0xAB};
    EXPECT_EQ(hexText(bytes, 4), "000ff0ab");
    EXPECT_EQ(hexText(bytes, 0), "");
}

TEST(TextTest, PartsOfTexts) {
    EXPECT_TRUE(startsWith("-x", "-") && startsWith("", ""));
    EXPECT_FALSE(startsWith("", "-") || startsWith("x-", "-"));
    EXPECT_TRUE(contains("Accelerometer_2", "_2"));
    EXPECT_FALSE(contains("Accelerometer2_", "_2"));
}

}  // namespace tavocal::test
