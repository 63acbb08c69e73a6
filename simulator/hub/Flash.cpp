#include "simulator/hub/Flash.h"

namespace tavocal::simulator {

Bytes Flash::block(const LUID& luid) const {
    const auto found = stored.find(luidText(luid));
    return found == stored.end() ? Bytes() : found->second;
}

void Flash::store(const LUID& luid, const Bytes& block) {
    stored[luidText(luid)] = block;
}

}  // namespace tavocal::simulator
