#pragma once

#include <functional>
#include <vector>

#include "simulator/device/DeviceOptions.h"
#include "simulator/hub/HubSensor.h"
#include "simulator/messages/FirmwareAnswer.h"

namespace tavocal::simulator {

class Flash;
class World;

// Takes one calibrated reading with its time in seconds.
using ReadingSink =
    std::function<void(const HubSensor& sensor, double seconds, const RawReading& reading)>;

// The sensors that the firmware lists: for each kind the static ones, for each motion sensor also
// the dynamic one that belongs to it.
class SensorHub {
  public:
    // REQUIRES: `theWorld` outlives the hub.
    SensorHub(const DeviceOptions& options, World& theWorld);

    SensorGroups groups() const;
    // Null for a LUID that isn't listed.
    HubSensor* find(const LUID& luid);

    // Stops all reports and takes the stored calibrations over.
    void restart(const Flash& flash);
    // All static sensors report.
    void switchOn(double now);

    // Measures what falls due up to `seconds`, in the order of time.
    void advanceTo(double seconds, const ReadingSink& sink);
    // The same with nobody to take it.
    void skipTo(double seconds);

  private:
    HubSensor* earliest(double limit);

    World& world;
    std::vector<HubSensor> sensors;
};

// The LUIDs of a device, in the order of the firmware's list.
std::vector<LUID> hubLuids(const DeviceOptions& options);

}  // namespace tavocal::simulator
