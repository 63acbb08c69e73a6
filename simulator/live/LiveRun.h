#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "simulator/live/LiveDevice.h"
#include "simulator/live/LiveOperator.h"
#include "simulator/system/ChildProcess.h"
#include "simulator/system/FirmwareServer.h"
#include "simulator/system/SignalWatch.h"

namespace tavocal::simulator {

// One run of the tool on a simulated device with a simulated operator, all on the caller's thread.
class LiveRun {
  public:
    // Starts the tool. REQUIRES: words in request.tool.
    explicit LiveRun(const LiveRequest& request);

    // Until the tool has ended. The result is its exit status.
    int finish();

    // Throws OutputError.
    void saveDevice() const { device.save(); }

  private:
    void serve();
    void passOutputOn();
    void passSignalOn();
    void noteRecording();
    void tellComplaint();

    LiveDevice device;
    SignalWatch signals;
    FirmwareServer server;
    ChildProcess tool;
    LiveOperator person;
    std::optional<double> recordingSince;
    std::string toldComplaint;
    // When an interrupted tool has to have ended.
    std::optional<std::chrono::steady_clock::time_point> killAt;
};

}  // namespace tavocal::simulator
