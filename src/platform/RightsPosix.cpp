#include <fcntl.h>
#include <unistd.h>

#include "platform/DeviceSocketPosix.h"
#include "platform/Rights.h"

namespace tavocal::platform {

bool hasDeviceRights() {
    if (geteuid() == 0) {
        return true;
    }
    const std::string socket = findSocket(deviceSocketPaths());
    return !socket.empty() && faccessat(AT_FDCWD, socket.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
}

}  // namespace tavocal::platform
