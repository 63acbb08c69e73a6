#pragma once

namespace tavocal::platform {

// The process may reach the firmware: on Windows its token is elevated; on POSIX its effective user
// is root or may read and write the firmware's socket.
bool hasDeviceRights();

}  // namespace tavocal::platform
