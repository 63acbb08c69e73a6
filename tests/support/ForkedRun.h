#pragma once

#include <functional>

#include "support/ToolRun.h"

namespace tavocal::test {

// Runs `action` in a copy of this process, which ends with its result or ends itself. For what ends
// a process or leaves threads behind. REQUIRES: this process has one thread.
ToolResult runForked(const std::function<int()>& action);

}  // namespace tavocal::test
