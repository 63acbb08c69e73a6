#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "simulator/live/LiveDevice.h"
#include "simulator/system/FirmwareServer.h"

namespace tavocal::test {

// The simulated firmware of a new device at work in the working folder, on a thread of its own.
// The options are those of a live run.
class SimulatedFirmware {
  public:
    explicit SimulatedFirmware(const std::vector<std::string>& options)
        : device(simulator::parseLiveArguments(options, 1.0)) {}
    ~SimulatedFirmware() { stop(); }

    // What is stored by now; nothing is answered any more.
    const simulator::Flash& stop() {
        stopped = true;
        if (thread.joinable()) {
            thread.join();
        }
        return device.firmware().flash();
    }

  private:
    simulator::LiveDevice device;
    simulator::FirmwareServer server{"tavo.sock", device.firmware(), 100.0};
    std::atomic<bool> stopped{false};
    std::thread thread{[this] {
        while (!stopped) {
            server.serve({});
        }
    }};
};

}  // namespace tavocal::test
