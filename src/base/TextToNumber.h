#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavocal {

// A signed 32-bit decimal number that takes up the whole of `text`; the empty text is 0. Leading
// white space and a sign are allowed. Throws CalibrationException
// "Conversion error. Value " + text + " is not a valid number", also on overflow.
std::int32_t parseInt(const std::string& text);

// A double that takes up the whole of `text`, as strtod reads it: blanks in front, "inf", "nan" and
// hexadecimal forms count. False for anything else.
bool readDouble(std::string_view text, double& value);

// The same; what is no double throws CalibrationException
// "Conversion error. Value " + text + " is not a valid double".
double parseDouble(const std::string& text);

}  // namespace tavocal
