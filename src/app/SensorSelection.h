#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace tavocal {

class Sensor;
struct RunSettings;

// Which sensors exist in a run on dumps, and which of a run's sensors it works on.
class SensorSelection {
  public:
    using Sensors = std::vector<std::shared_ptr<Sensor>>;
    // Throws CalibrationException if the device can't have a second sensor instance. Asked on a
    // device only, and only where a second instance is wanted.
    using SecondInstanceCheck = std::function<void()>;

    // `settings` must outlive this object.
    explicit SensorSelection(const RunSettings& settings);

    // One sensor for each dump that can be opened, primary before secondary, of the classes that
    // the run is about. A missing dump is no failure.
    Sensors initSensorsFromDumps() const;

    // The sensors that the run works on, in the order of `physicalSensors`, each told of the
    // options that it works by. Throws CalibrationException if there are none, or if one has no
    // dump to be replayed from.
    Sensors initCalibratingSensors(const Sensors& physicalSensors,
                                   const SecondInstanceCheck& checkSecondInstance) const;

  private:
    bool isEligible(const Sensor& sensor) const;
    bool isInstanceSelected(const Sensor& sensor) const;
    bool isClassSelected(const Sensor& sensor) const;
    bool isSelected(const Sensor& sensor) const;
    bool needsSecondInstance(const Sensor& sensor) const;
    void passOptions(Sensor& sensor) const;
    void requireDumps(const Sensors& sensors) const;

    const RunSettings& settings;
};

}  // namespace tavocal
