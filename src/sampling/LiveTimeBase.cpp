#include "sampling/LiveTimeBase.h"

#include "base/Failures.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr double kLongestStart = 5000.0;  // milliseconds

bool markAndCheckAllSeen(const Sensor& sensor,
                         const std::vector<std::shared_ptr<Sensor>>& sensors) {
    bool allSeen = true;
    for (const auto& other : sensors) {
        if (other->getLuid() == sensor.getLuid()) {
            other->firstSampleSeen = true;
        }
        allSeen = allSeen && other->firstSampleSeen;
    }
    return allSeen;
}

}  // namespace

std::optional<double> LiveTimeBase::place(const Sensor& sensor, double timeMs,
                                          const std::vector<std::shared_ptr<Sensor>>& sensors) {
    if (firstSampleTime == 0.0) {
        firstSampleTime = timeMs;
    }
    if (!ready) {
        if (timeMs - firstSampleTime > kLongestStart) {
            throw CalibrationException("Too long time waiting for all sensors data to be ready.");
        }
        ready = markAndCheckAllSeen(sensor, sensors);
        return std::nullopt;
    }
    if (!timeBaseSet) {
        timeBase = timeMs;
        timeBaseSet = true;
    }
    const double base = timeBase;
    return base > timeMs ? 0.0 : timeMs - base;
}

}  // namespace tavocal
