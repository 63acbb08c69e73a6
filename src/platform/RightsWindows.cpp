#include <windows.h>

#include "platform/Rights.h"

namespace tavocal::platform {

bool hasDeviceRights() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) {
        return false;
    }
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    const bool known =
        GetTokenInformation(token, TokenElevation, &elevation, sizeof(elevation), &size) != 0;
    CloseHandle(token);
    return known && elevation.TokenIsElevated != 0;
}

}  // namespace tavocal::platform
