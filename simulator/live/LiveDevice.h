#pragma once

#include "simulator/device/World.h"
#include "simulator/firmware/Firmware.h"
#include "simulator/live/LiveArguments.h"

namespace tavocal::simulator {

// The device of a live run: what its sensors measure, its firmware, and the file that keeps it.
class LiveDevice {
  public:
    explicit LiveDevice(const LiveRequest& request);

    World& world() { return theWorld; }
    Firmware& firmware() { return theFirmware; }

    // Writes the device's file, if it has one. Throws OutputError.
    void save() const;

  private:
    LiveOptions options;
    World theWorld;
    Firmware theFirmware;
};

}  // namespace tavocal::simulator
