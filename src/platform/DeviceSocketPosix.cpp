#include "platform/DeviceSocketPosix.h"

#include <sys/stat.h>

namespace tavocal::platform {

std::vector<std::string> deviceSocketPaths() {
    return {"tavo.sock", "/run/tavo/kelu.sock"};
}

std::string findSocket(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        struct stat info {};
        if (stat(path.c_str(), &info) == 0 && S_ISSOCK(info.st_mode)) {
            return path;
        }
    }
    return {};
}

}  // namespace tavocal::platform
