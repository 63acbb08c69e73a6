#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "simulator/device/DeviceOptions.h"
#include "simulator/device/SampleClock.h"
#include "simulator/device/SensorModel.h"
#include "simulator/world/MagneticField.h"
#include "simulator/world/Trajectory.h"

namespace tavocal::simulator {

// Takes the samples that a device delivers, in the order of their times.
using SampleSink = std::function<void(const SensorModel& sensor, const Row& row)>;

// A rigid device with its sensors, in a world with gravity and a magnetic field. Time runs from 0,
// in seconds. The motion may be planned far ahead (a recording) or only up to now (a live run):
// what lies before the last `advanceTo` must not be changed any more. A sample takes in up to a
// millisecond behind its own time, as far as the motion is planned by then. One thread at a time.
class Device {
  public:
    explicit Device(const DeviceOptions& options);

    Trajectory& motion() { return trajectory; }
    const Trajectory& motion() const { return trajectory; }
    MagneticField& field() { return magneticField; }
    const std::vector<SensorModel>& sensors() const { return sensorModels; }

    // Delivers every sample that falls due up to `seconds`.
    void advanceTo(double seconds, const SampleSink& sink);

    // The sensors of a kind deliver nothing from `seconds` on.
    void silence(SensorKind kind, double seconds);

    // What a sensor, given by its place in sensors(), says at a time, for whoever keeps his own
    // clock. Each call draws new noise. Nothing from a sensor that is silent by then.
    std::optional<Vec3> read(std::size_t sensor, double seconds);

    // What a perfect sensor with the device's own axes would read, without the noise.
    Vec3 trueValue(SensorKind kind, double seconds) const;

  private:
    struct Channel {
        std::size_t sensor;  // index of sensorModels
        SampleClock clock;
        double end;  // seconds
    };

    Channel* earliest(double limit);
    Row nextRow(Channel& channel);

    Trajectory trajectory;
    MagneticField magneticField;
    std::vector<SensorModel> sensorModels;
    std::vector<Channel> channels;
    double tick;  // smallest step of the told times, in milliseconds
};

}  // namespace tavocal::simulator
