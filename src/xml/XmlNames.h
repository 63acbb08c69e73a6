#pragma once

#include <string_view>

namespace tavocal {

// The characters that an element name may begin with, and those that it may go on with: the two
// classes of XML 1.0, up to U+FFFD.
bool isNameStart(wchar_t character);
bool isNameCharacter(wchar_t character);

// Equal when both are lower-cased character by character by the current locale.
bool sameName(std::wstring_view left, std::wstring_view right);

}  // namespace tavocal
