#pragma once

#include <string>
#include <string_view>

namespace tavocal {

// Replaces the references of an attribute's value, in two passes over the whole text: first the
// numeric ones, "&#" and one to five decimal digits or "&#x" and one to five hexadecimal ones and
// ";", of whose number the low 16 bits are taken as one character; then "&amp;", "&gt;", "&lt;",
// "&quot;" and "&apos;". So "&#38;lt;" becomes "<" but "&amp;lt;" becomes "&lt;". A decimal number
// ends at the first hexadecimal letter. What doesn't look like a reference stays.
//
// Throws std::invalid_argument "invalid stoi argument" for a decimal reference that begins with
// a hexadecimal letter.
std::wstring decodeReferences(std::wstring_view text);

}  // namespace tavocal
