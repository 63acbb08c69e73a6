#include <windows.h>
// shellapi.h needs what windows.h declares.
#include <shellapi.h>

#include "platform/ProcessStart.h"

namespace tavocal::platform {

void startDetached(const std::string& fileName) {
    ShellExecuteA(nullptr, "open", fileName.c_str(), nullptr, nullptr, SW_HIDE);
}

}  // namespace tavocal::platform
