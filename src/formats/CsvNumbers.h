#pragma once

#include <string_view>

namespace tavocal {

// A double that takes up the whole field, as strtod reads it: blanks in front, "inf", "nan" and
// hexadecimal forms count. False for anything else.
bool readCsvDouble(std::string_view field, double& value);

// A field that readCsvDouble accepts, read as an unsigned whole number the way strtoul does with
// base 0: digits behind a point are cut off, "0x" and a leading "0" switch the base. Anything above
// 4294967295 gives that value.
double readCsvMilliseconds(std::string_view field);

}  // namespace tavocal
