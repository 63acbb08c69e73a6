#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/device/SampleClock.h"
#include "simulator/device/SensorKind.h"
#include "simulator/hub/AppliedCalibration.h"
#include "simulator/messages/FirmwareCommand.h"
#include "vocabulary/Luid.h"

namespace tavocal::simulator {

// One sensor of the firmware's list: its properties, and when it takes its samples. A dynamic
// sensor takes none.
class HubSensor {
  public:
    // `jitterSeconds` is the standard deviation of the time between its samples.
    HubSensor(SensorKind theKind, const LUID& theLuid, double jitterSeconds, std::uint64_t theSeed);

    const LUID& luid() const { return id; }
    SensorKind kind() const { return sensorKind; }
    bool secondary() const { return id.InstanceId != 0; }
    bool isStatic() const { return (id.Flags & kStaticFlag) != 0; }

    // What is applied to each reading from now on.
    AppliedCalibration calibration;

    // Sets a property to the value in `data`. Its size and value are checked.
    FirmwareStatus setProperty(std::uint16_t property, const Bytes& data, double now);
    // Nothing for a property that the sensor doesn't have.
    std::optional<std::uint32_t> property(std::uint16_t property) const;

    void switchOn(double now);
    // As after a restart.
    void reset();

    // Seconds of the next sample; infinite while it reports nothing.
    double nextSample() const;
    void step();

  private:
    FirmwareStatus setInterval(std::uint32_t microseconds, double now);
    FirmwareStatus setReporting(std::uint8_t state, double now);
    void startClock(double now);

    SensorKind sensorKind;
    LUID id;
    double jitter;  // seconds
    std::uint64_t seed;
    std::uint32_t interval;  // microseconds
    std::uint32_t sensitivity = 0;
    std::optional<SampleClock> clock;  // while it reports
};

}  // namespace tavocal::simulator
