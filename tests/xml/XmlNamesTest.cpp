#include "xml/XmlNames.h"

#include <gtest/gtest.h>

namespace tavocal::test {

namespace {

// First and last of each range of characters, in order, so that what lies between two ranges
// belongs to neither.
constexpr int kStarts[] = {':',    ':',    'A',    'Z',    '_',    '_',    'a',    'z',
                           0xC0,   0xD6,   0xD8,   0xF6,   0xF8,   0x2FF,  0x370,  0x37D,
                           0x37F,  0x1FFF, 0x200C, 0x200D, 0x2070, 0x218F, 0x2C00, 0x2FEF,
                           0x3001, 0xD7FF, 0xF900, 0xFDCF, 0xFDF0, 0xFFFD};
constexpr int kFurther[] = {'-', '.', '0', '9', 0xB7, 0xB7, 0x300, 0x36F, 0x203F, 0x2040};

template <std::size_t Count>
bool holds(const int (&ranges)[Count], int code) {
    bool held = false;
    for (std::size_t i = 0; i < Count; i += 2) {
        held = held || (ranges[i] <= code && code <= ranges[i + 1]);
    }
    return held;
}

}  // namespace

TEST(XmlNamesTest, JudgesEveryCharacter) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto character = static_cast<wchar_t>(code);
        const bool start = holds(kStarts, code);
        ASSERT_EQ(isNameStart(character), start) << code;
        ASSERT_EQ(isNameCharacter(character), start || holds(kFurther, code)) << code;
    }
}

TEST(XmlNamesTest, ComparesIgnoringCase) {
    EXPECT_TRUE(sameName(L"SensorTypeId", L"sENSORtYPEiD") && sameName(L"", L""));
    EXPECT_FALSE(sameName(L"Sensor", L"Sensors") || sameName(L"Sensors", L"Sensor"));
    EXPECT_FALSE(sameName(L"a_b", L"a-b"));
}

}  // namespace tavocal::test
