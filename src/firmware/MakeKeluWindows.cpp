#include "firmware/KeluWindows.h"
#include "firmware/MakeKelu.h"

namespace tavocal {

std::shared_ptr<KeluBase> makeKelu(std::chrono::milliseconds timeout) {
    return std::make_shared<KeluWindows>(timeout);
}

}  // namespace tavocal
