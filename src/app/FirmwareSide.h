#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "firmware/SDT.h"

namespace tavocal {

class Sensor;
struct RunSettings;

// What a run does with the firmware before and after it works on the sensors. Main thread. An
// SmhiException of the exchange passes through unless told otherwise.
class FirmwareSide {
  public:
    using Sensors = std::vector<std::shared_ptr<Sensor>>;
    // From a calibrating static sensor to its dynamic companion.
    using Companions = std::map<std::shared_ptr<Sensor>, std::shared_ptr<Sensor>>;

    // `settings` must outlive this object. Each command gets a channel of its own.
    FirmwareSide(const RunSettings& settings, SDT::ChannelFactory makeChannel);

    // Throws CalibrationException if the process may not reach the device.
    void checkAdministrator() const;

    // Throws CalibrationException unless the device can have a second instance of its sensors.
    void checkSecondInstance() const;

    // Every sensor of the firmware; or those of the file to import, each of which must exist on the
    // platform.
    Sensors initPhysicalSensors() const;

    Companions matchDynamicSensors(const Sensors& calibratingSensors,
                                   const Sensors& physicalSensors) const;

    // Reads the calibration blocks of the run's sensors and their companions, or of all sensors for
    // an export. A sensor whose block can't be read stays without one.
    void loadSensorsData(const Sensors& physicalSensors, const Sensors& calibratingSensors,
                         const Companions& companions) const;

    // Writes the new blocks and restarts the firmware. An interrupt waits until all of them are
    // there.
    void flushCalibrationData(const Sensors& physicalSensors) const;

  private:
    SDT sdt() const { return SDT(makeChannel); }
    void loadSensor(Sensor& sensor) const;
    void writeBlocks(const Sensors& physicalSensors) const;
    void restartTavo() const;

    const RunSettings& settings;
    SDT::ChannelFactory makeChannel;
};

}  // namespace tavocal
