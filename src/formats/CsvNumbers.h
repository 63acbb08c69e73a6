#pragma once

#include <string_view>

namespace tavocal {

// A field that readDouble accepts, read as an unsigned whole number the way strtoul does with
// base 0: digits behind a point are cut off, "0x" and a leading "0" switch the base. Anything above
// 4294967295 gives that value.
double readCsvMilliseconds(std::string_view field);

}  // namespace tavocal
