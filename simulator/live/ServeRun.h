#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/live/LiveDevice.h"
#include "simulator/operator/Operator.h"
#include "simulator/system/FirmwareServer.h"
#include "simulator/system/SignalWatch.h"

namespace tavocal::simulator {

// A simulated device for a person who moves it by typing lines, all on the caller's thread.
class ServeRun {
  public:
    explicit ServeRun(const LiveRequest& request);

    // Until a signal or a line asks for the end. The end of the input is none.
    void finish();

    // Throws OutputError.
    void saveDevice() const { device.save(); }

    // What can be typed.
    static std::string help();

  private:
    void serve();
    void readInput();
    void obey(const std::string& line);
    double nextBegin();
    bool moveTo(const std::string& line);
    bool changeLight(const std::string& line);
    bool changeFlow(const std::string& line);

    LiveDevice device;
    OperatorOptions options;
    std::uint64_t seed;
    SignalWatch signals;
    FirmwareServer server;
    Operator person;
    std::string partialLine;
    bool inputEnded = false;
    bool finished = false;
};

}  // namespace tavocal::simulator
