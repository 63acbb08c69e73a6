#pragma once

#include <string>

#include "commandline/CmdLineOption.h"

namespace tavocal {

// The longest value of an option, in bytes.
constexpr std::size_t kMaxCmdLineValue = 255;

// Judges the value of one option by itself. Throws CmdLineException "Invalid value of: '" + name +
// "', " and the reason; `name` is the option as the user typed it.
void checkCmdLineValue(const CmdLineParsedOption& option, const std::string& name);

}  // namespace tavocal
