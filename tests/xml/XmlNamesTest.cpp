#include "xml/XmlNames.h"

#include <gtest/gtest.h>

#include <array>

namespace tavocal {
namespace {

struct NameRange {
    int first;
    int last;
    bool start;
};

// In order, so that what lies between two of them belongs to neither.
constexpr std::array<NameRange, 19> kRanges = {{{'-', '.', false},
                                                {'0', '9', false},
                                                {':', ':', true},
                                                {'A', 'Z', true},
                                                {'_', '_', true},
                                                {'a', 'z', true},
                                                {0xB7, 0xB7, false},
                                                {0xC0, 0xD6, true},
                                                {0xD8, 0xF6, true},
                                                {0xF8, 0x2FF, true},
                                                {0x300, 0x36F, false},
                                                {0x370, 0x37D, true},
                                                {0x37F, 0x1FFF, true},
                                                {0x200C, 0x200D, true},
                                                {0x203F, 0x2040, false},
                                                {0x2070, 0x218F, true},
                                                {0x2C00, 0x2FEF, true},
                                                {0x3001, 0xD7FF, true},
                                                {0xF900, 0xFDCF, true}}};

const NameRange* rangeOf(int code) {
    static constexpr NameRange kLast = {0xFDF0, 0xFFFD, true};
    for (const NameRange& range : kRanges) {
        if (range.first <= code && code <= range.last) {
            return &range;
        }
    }
    return kLast.first <= code && code <= kLast.last ? &kLast : nullptr;
}

TEST(XmlNames, JudgesEveryCharacter) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const NameRange* range = rangeOf(code);
        const auto character = static_cast<wchar_t>(code);
        ASSERT_EQ(isNameCharacter(character), range != nullptr) << std::hex << code;
        ASSERT_EQ(isNameStart(character), range != nullptr && range->start) << std::hex << code;
    }
}

TEST(XmlNames, ComparesIgnoringCase) {
    EXPECT_TRUE(sameName(L"SensorTypeId", L"sENSORtYPEiD"));
    EXPECT_TRUE(sameName(L"", L""));
    EXPECT_FALSE(sameName(L"Sensor", L"Sensors"));
    EXPECT_FALSE(sameName(L"Sensors", L"Sensor"));
    EXPECT_FALSE(sameName(L"a_b", L"a-b"));
}

}  // namespace
}  // namespace tavocal
