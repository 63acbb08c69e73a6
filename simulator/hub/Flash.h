#pragma once

#include <map>
#include <string>

#include "base/Bytes.h"
#include "vocabulary/Luid.h"

namespace tavocal::simulator {

// What the firmware keeps over a restart: the calibration block of each sensor, by LUID text. A
// sensor without an entry has an empty block.
class Flash {
  public:
    Bytes block(const LUID& luid) const;
    void store(const LUID& luid, const Bytes& block);

    const std::map<std::string, Bytes>& blocks() const { return stored; }

  private:
    std::map<std::string, Bytes> stored;
};

}  // namespace tavocal::simulator
