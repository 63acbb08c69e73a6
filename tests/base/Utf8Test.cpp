#include "base/Utf8.h"

#include <gtest/gtest.h>

namespace tavocal::test {

TEST(Utf8Test, DecodesTheFirstAndTheLastOfEachForm) {
    EXPECT_EQ(wideFromUtf8(std::string("\0a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xE0\xBF\xBF", 13)),
              std::wstring(L"\0a\x7F\x80\x7FF\x800\xFFF", 7));
    EXPECT_EQ(
        wideFromUtf8("\xE1\x80\x80\xEC\xBF\xBF\xED\x80\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"),
        L"\x1000\xCFFF\xD000\xD7FF\xE000\xFFFF");
    // What needs more than 16 bits becomes a pair.
    EXPECT_EQ(wideFromUtf8("\xF0\x90\x80\x80\xF1\x80\x80\x80\xF3\xBF\xBF\xBF\xF4\x8F\xBF\xBF"),
              L"\xD800\xDC00\xD8C0\xDC00\xDBBF\xDFFF\xDBFF\xDFFF");
}

TEST(Utf8Test, RefusesWhatIsNotWellFormed) {
    for (const std::string bytes :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xC2\xC2\x80",
          "\xE0\x9F\xBF", "\xE0\xA0", "\xE1\x80\x41", "\xED\xA0\x80", "\xED\xBF\xBF",
          "\xF0\x8F\xBF\xBF", "\xF0\x90\x80", "\xF1\x80\x80\xC0", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFF", "text\xE4"}) {
        EXPECT_EQ(wideFromUtf8(bytes), std::nullopt) << testing::PrintToString(bytes);
    }
}

}  // namespace tavocal::test
