#include "xml/XmlNames.h"

#include <gtest/gtest.h>

namespace tavocal::test {

// First and last of each range of characters, in order, so that what lies between two ranges
// belongs to neither.
constexpr std::wstring_view kStarts =
    L"::AZ__az\u00C0\u00D6\u00D8\u00F6\u00F8\u02FF\u0370\u037D\u037F\u1FFF\u200C\u200D\u2070\u218F"
    L"\u2C00\u2FEF\u3001\uD7FF\uF900\uFDCF\uFDF0\uFFFD";
constexpr std::wstring_view kFurther = L"-.09\u00B7\u00B7\u0300\u036F\u203F\u2040";

static bool holds(std::wstring_view ranges, wchar_t character) {
    bool held = false;
    for (std::size_t i = 0; i < ranges.size(); i += 2) {
        held = held || (ranges[i] <= character && character <= ranges[i + 1]);
    }
    return held;
}

TEST(XmlNamesTest, JudgesEveryCharacterAndComparesIgnoringCase) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto character = static_cast<wchar_t>(code);
        const bool start = holds(kStarts, character);
        ASSERT_EQ(isNameStart(character), start) << code;
        ASSERT_EQ(isNameCharacter(character), start || holds(kFurther, character)) << code;
    }
    EXPECT_TRUE(sameName(L"SensorTypeId", L"sENSORtYPEiD") && sameName(L"", L""));
    EXPECT_FALSE(sameName(L"Sensor", L"Sensors") || sameName(L"Sensors", L"Sensor") ||
                 sameName(L"a_b", L"a-b"));
}

}  // namespace tavocal::test
