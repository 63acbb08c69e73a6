#pragma once

#include <vector>

#include "app/CmdLineOption.h"

namespace tavocal {

// Every option there is, in the order of the usage text.
std::vector<CmdLineOption> makeCmdLineOptions();

}  // namespace tavocal
