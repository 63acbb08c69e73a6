#include "firmware/KeluLinux.h"
#include "firmware/MakeKelu.h"
#include "platform/DeviceSocketPosix.h"

namespace tavocal {

std::shared_ptr<KeluBase> makeKelu(std::chrono::milliseconds timeout) {
    return std::make_shared<KeluLinux>(platform::deviceSocketPaths(), timeout);
}

}  // namespace tavocal
