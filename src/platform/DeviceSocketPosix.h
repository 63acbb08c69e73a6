#pragma once

#include <string>
#include <vector>

namespace tavocal::platform {

// Where the firmware's socket may stand, in the order in which it is looked for.
std::vector<std::string> deviceSocketPaths();

// The first of `paths` that is a socket, or an empty text.
std::string findSocket(const std::vector<std::string>& paths);

}  // namespace tavocal::platform
