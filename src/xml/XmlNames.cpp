#include "xml/XmlNames.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cwctype>

namespace tavocal {

namespace {

struct CharacterRange {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr std::array<CharacterRange, 15> kStartRanges = {{{':', ':'},
                                                          {'A', 'Z'},
                                                          {'_', '_'},
                                                          {'a', 'z'},
                                                          {0x00C0, 0x00D6},
                                                          {0x00D8, 0x00F6},
                                                          {0x00F8, 0x02FF},
                                                          {0x0370, 0x037D},
                                                          {0x037F, 0x1FFF},
                                                          {0x200C, 0x200D},
                                                          {0x2070, 0x218F},
                                                          {0x2C00, 0x2FEF},
                                                          {0x3001, 0xD7FF},
                                                          {0xF900, 0xFDCF},
                                                          {0xFDF0, 0xFFFD}}};

// What a name may hold behind its first character, beside the start characters.
constexpr std::array<CharacterRange, 6> kFurtherRanges = {
    {{'-', '-'}, {'.', '.'}, {'0', '9'}, {0x00B7, 0x00B7}, {0x0300, 0x036F}, {0x203F, 0x2040}}};

template <std::size_t Count>
bool anyHolds(const std::array<CharacterRange, Count>& ranges, wchar_t character) {
    const auto code = static_cast<std::uint32_t>(character);
    return std::any_of(ranges.begin(), ranges.end(), [code](const CharacterRange& range) {
        return range.first <= code && code <= range.last;
    });
}

std::wint_t lowered(wchar_t character) {
    return std::towlower(static_cast<std::wint_t>(character));
}

}  // namespace

bool isNameStart(wchar_t character) {
    return anyHolds(kStartRanges, character);
}

bool isNameCharacter(wchar_t character) {
    return isNameStart(character) || anyHolds(kFurtherRanges, character);
}

bool sameName(std::wstring_view left, std::wstring_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](wchar_t a, wchar_t b) { return lowered(a) == lowered(b); });
}

}  // namespace tavocal
