#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "commandline/CmdLineOption.h"

namespace tavocal {

// The forms of a command line, the list of `options` and examples, in LF lines, for a program that
// is called `program`.
std::string usageText(const std::vector<CmdLineOption>& options, std::string_view program);

}  // namespace tavocal
