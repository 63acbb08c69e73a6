#pragma once

#include <string>
#include <string_view>

namespace tavocal {

// `value` in fixed notation with six digits behind the point, as printf's "%f" does it. A value
// that is not finite gives "nan", "inf" or "-inf" on every platform.
std::string fixedText(double value);

// Appends fixedText(value) to `out` without a temporary.
void appendFixed(std::string& out, double value);

// Lower case by tolower, character by character.
std::string lowerCase(std::string_view text);

// Widens character by character; meant for ASCII.
std::wstring widen(std::string_view text);

// UTF-8 of a wide text; a character that is no Unicode scalar value becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

// Narrows character by character: anything beyond 255 becomes '?', so that it can't turn into
// a digit or a sign by accident.
std::string narrow(std::wstring_view text);

// Two lower-case hexadecimal digits for each byte.
std::string hexText(const unsigned char* bytes, std::size_t count);

// Each LF becomes CR LF.
std::string withCrLf(std::string_view text);

bool startsWith(std::string_view text, std::string_view prefix);
bool contains(std::string_view text, std::string_view part);

}  // namespace tavocal
