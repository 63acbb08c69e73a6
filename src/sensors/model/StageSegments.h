#pragma once

#include <cstddef>
#include <vector>

#include "base/Failures.h"
#include "numerics/Sample.h"

namespace tavocal {

class Sensor;

// A half-open range of sample indexes.
struct StageRange {
    int first = 0;
    int end = 0;

    int count() const { return end > first ? end - first : 0; }
};

// `segmentTimes` as indexes into the sensor's samples: entry i is the first sample whose timestamp
// is above time i, strictly; the last entry is the sample count. Throws CalibrationException if
// there are no samples or no times, if no sample lies behind a time, or if a middle stage is empty.
std::vector<int> segmentIndexes(const Sensor& sensor, const std::vector<double>& segmentTimes);

// That no sample lies before entry `boundary` of segmentIndexes and behind the entry before it.
CalibrationException noSamplesBefore(const Sensor& sensor, std::size_t boundary);

// The samples of a stage, and of the motion behind it. An empty range if there is no such one.
StageRange stageRange(const std::vector<int>& indexes, int stage);
StageRange motionRange(const std::vector<int>& indexes, int stage);

// The Full flow is told by the number of its times: seven stages, of which two show each position
// but the last, before and behind a turn.
constexpr std::size_t kFullFlowEntries = 14;
// Times, or indexes, from a position's first stage to that of the next one.
constexpr std::size_t positionStride(std::size_t entries) {
    return entries == kFullFlowEntries ? 4 : 2;
}

void appendSamples(std::vector<Sample>& to, const std::vector<Sample>& from, StageRange range);

// The Euclidean length of each sample of the range.
std::vector<double> sampleNorms(const std::vector<Sample>& samples, StageRange range);

}  // namespace tavocal
