#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace tavocal {

class Sensor;

// Moves the firmware's times of a live run to the run's time base. The samples of the start-up,
// until every sensor has delivered once, are not kept, so that all data begins at the same moment.
// On the sample thread, but for drop.
class LiveTimeBase {
  public:
    // The sample's time on the run's time base in milliseconds, or nothing if it is not to be kept.
    // `timeMs` is the firmware's. Throws CalibrationException if the sensors take too long to
    // begin.
    std::optional<double> place(const Sensor& sensor, double timeMs,
                                const std::vector<std::shared_ptr<Sensor>>& sensors);

    // From now on samples have the firmware's times. Any thread.
    void drop() { timeBase = 0.0; }

  private:
    bool ready = false;
    double firstSampleTime = 0.0;  // of the very first sample; 0.0 means none yet
    bool timeBaseSet = false;
    std::atomic<double> timeBase = 0.0;
};

}  // namespace tavocal
