#include "sensors/model/StageSegments.h"

#include "log/Logger.h"
#include "log/ScopeLog.h"
#include "sensors/model/SampleWindows.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr const char* kLogName = "InertialSensor::findIndex";

[[noreturn]] void fail(const std::string& logLine, const std::string& message) {
    TAVOCAL_LOG(Debug, kLogName, logLine);
    throw CalibrationException(message);
}

// From one entry to the next.
StageRange rangeAt(const std::vector<int>& indexes, int entry) {
    const auto at = static_cast<std::size_t>(entry);
    if (entry < 0 || at + 1 >= indexes.size()) {
        return {};
    }
    return {indexes[at], indexes[at + 1]};
}

}  // namespace

std::vector<int> segmentIndexes(const Sensor& sensor, const std::vector<double>& segmentTimes) {
    TAVOCAL_SCOPE_ENTERED("InertialSensor::findIndex");
    if (sensor.bufferedData.empty()) {
        fail("Calibration exception was thrown from findIndex, no data was sampled for " +
                 sensor.name,
             sensor.getDisplayName() + " Calibration Error: No data was available");
    }
    if (segmentTimes.empty()) {
        fail("Calibration exception was thrown from findIndex, no segmentTimes were set for " +
                 sensor.name,
             sensor.getDisplayName() + " Calibration Error: Failed splitting data to segments");
    }
    const int sampleCount = static_cast<int>(sensor.bufferedData.size());
    const std::size_t last = segmentTimes.size() - 1;
    std::vector<int> indexes(segmentTimes.size());
    for (std::size_t i = 0; i < segmentTimes.size(); ++i) {
        indexes[i] = firstIndexAbove(sensor.bufferedData, segmentTimes[i]);
        if (indexes[i] == sampleCount && i != last) {
            fail("Calibration exception was thrown from findIndex, ind is -1",
                 sensor.name + " Calibration Error: Failed splitting data to segments");
        }
        if (i != 0 && i != last && indexes[i] == indexes[i - 1]) {
            throw noSamplesBefore(sensor, i);
        }
    }
    indexes[last] = sampleCount;
    return indexes;
}

CalibrationException noSamplesBefore(const Sensor& sensor, std::size_t boundary) {
    return CalibrationException(sensor.name +
                                " Calibration Error: No data was sampled during stage " +
                                std::to_string(boundary));
}

StageRange stageRange(const std::vector<int>& indexes, int stage) {
    return rangeAt(indexes, 2 * stage);
}

StageRange motionRange(const std::vector<int>& indexes, int stage) {
    return rangeAt(indexes, 2 * stage + 1);
}

void appendSamples(std::vector<Sample>& to, const std::vector<Sample>& from, StageRange range) {
    if (range.count() > 0) {
        to.insert(to.end(), from.begin() + range.first, from.begin() + range.end);
    }
}

std::vector<double> sampleNorms(const std::vector<Sample>& samples, StageRange range) {
    std::vector<double> norms;
    norms.reserve(static_cast<std::size_t>(range.count()));
    for (int i = range.first; i < range.end; ++i) {
        norms.push_back(norm(samples[static_cast<std::size_t>(i)].values));
    }
    return norms;
}

}  // namespace tavocal
