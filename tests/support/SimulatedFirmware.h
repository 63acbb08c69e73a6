#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "simulator/FactoryFlash.h"
#include "simulator/FirmwareServer.h"
#include "simulator/World.h"

namespace tavocal::test {

// The simulated firmware of a new device at work in the working folder, on a thread of its own.
class SimulatedFirmware {
  public:
    explicit SimulatedFirmware(const simulator::DeviceOptions& device,
                               const std::string& fault = "none")
        : world(device, {}),
          firmware({device, *simulator::firmwareFaultFromName(fault)}, flashOf(device), world),
          server("tavo.sock", firmware, 100.0),
          thread([this] {
              while (!stopped) {
                  server.serve({});
              }
          }) {}
    ~SimulatedFirmware() { stop(); }
    SimulatedFirmware(const SimulatedFirmware&) = delete;
    SimulatedFirmware& operator=(const SimulatedFirmware&) = delete;

    // What is stored by now; nothing is answered any more.
    const simulator::Flash& stop() {
        stopped = true;
        if (thread.joinable()) {
            thread.join();
        }
        return firmware.flash();
    }

  private:
    static simulator::Flash flashOf(const simulator::DeviceOptions& device) {
        simulator::LiveOptions options;
        static_cast<simulator::DeviceOptions&>(options.motion) = device;
        return factoryFlash(options);
    }

    simulator::World world;
    simulator::Firmware firmware;
    simulator::FirmwareServer server;
    std::atomic<bool> stopped{false};
    std::thread thread;
};

}  // namespace tavocal::test
