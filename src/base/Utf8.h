#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavocal {

// UTF-8 to 16-bit code units, a character beyond U+FFFF to a surrogate pair, on every platform.
// Nothing if the bytes aren't well-formed UTF-8: stray or missing continuation bytes, overlong
// forms, surrogates, codes beyond U+10FFFF. A byte order mark becomes U+FEFF.
std::optional<std::wstring> wideFromUtf8(std::string_view bytes);

}  // namespace tavocal
