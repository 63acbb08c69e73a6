#pragma once

#include <vector>

#include "commandline/CmdLineOption.h"

namespace tavocal {

// Every option there is, in the order of the usage text.
std::vector<CmdLineOption> makeCmdLineOptions();

}  // namespace tavocal
