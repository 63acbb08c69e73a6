#include "xml/Utf8.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Text.h"

namespace tavocal {
namespace {

TEST(Utf8, DecodesEachLength) {
    EXPECT_EQ(wideFromUtf8(""), L"");
    EXPECT_EQ(wideFromUtf8("a\x7F"), L"a\x7F");
    EXPECT_EQ(wideFromUtf8("\xC2\x80\xDF\xBF"), L"\x80\x7FF");
    EXPECT_EQ(wideFromUtf8("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"),
              L"\x800\xD7FF\xE000\xFFFF");
    EXPECT_EQ(wideFromUtf8("\xEF\xBB\xBF"), L"\xFEFF");
    EXPECT_EQ(wideFromUtf8(std::string(1, '\0')), std::wstring(1, L'\0'));
}

TEST(Utf8, SplitsWhatNeedsMoreThan16Bits) {
    const std::wstring units = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDC00),
                                static_cast<wchar_t>(0xDBFF), static_cast<wchar_t>(0xDFFF)};
    const std::string bytes = "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    EXPECT_EQ(wideFromUtf8(bytes), units);
    EXPECT_EQ(toUtf8(units), bytes);
}

TEST(Utf8, RefusesWhatIsNotWellFormed) {
    for (const char* bytes : {"\x80",
                              "\xBF",
                              "\xC0\x80",
                              "\xC1\xBF",
                              "\xC2",
                              "\xC2\x41",
                              "\xC2\xC2\x80",
                              "\xE0\x9F\xBF",
                              "\xE0\xA0",
                              "\xE1\x80\x41",
                              "\xED\xA0\x80",
                              "\xED\xBF\xBF",
                              "\xF0\x8F\xBF\xBF",
                              "\xF0\x90\x80",
                              "\xF1\x80\x80\xC0",
                              "\xF4\x90\x80\x80",
                              "\xF5\x80\x80\x80",
                              "\xFE",
                              "\xFF",
                              "text\xE4"}) {
        EXPECT_EQ(wideFromUtf8(bytes), std::nullopt) << hexText(
            reinterpret_cast<const unsigned char*>(bytes), std::char_traits<char>::length(bytes));
    }
}

}  // namespace
}  // namespace tavocal
