#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace tavocal {

class Sensor;

// Who takes the samples of a record session. The session calls all of it on its own thread, one
// call at a time, and never holds a lock meanwhile. A failure of a sample is the receiver's own to
// handle: an exception that leaves it ends the session.
class SampleReceiver {
  public:
    struct Target {
        std::shared_ptr<Sensor> sensor;  // only passed back, never touched by the session
        std::int32_t rawDivisor = 1;     // what the firmware's integers are divided by
    };

    virtual ~SampleReceiver() = default;

    // The sensor of that LUID text, or nothing, which skips the record.
    virtual std::optional<Target> findSensor(const std::string& luidText) = 0;

    // One record. `values` lives for the call only and has any number of values, also none.
    // `timeMs` is the firmware's time in milliseconds.
    virtual void handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                            double timeMs) = 0;

    // The session has failed: the stage is over, with `status` false.
    virtual void stageDone(bool status) = 0;
};

}  // namespace tavocal
