#include "sampling/ReplayMerge.h"

#include <limits>
#include <utility>

namespace tavocal {

namespace {

constexpr double kLatestCompared = 2147483647.0;

}  // namespace

ReplayMerge::ReplayMerge(std::vector<const std::vector<Sample>*> sensorStreams)
    : streams(std::move(sensorStreams)),
      positions(streams.size(), 0),
      horizon(std::numeric_limits<double>::max()) {}

bool ReplayMerge::isUsedUp(std::size_t stream) const {
    return streams[stream] == nullptr || positions[stream] >= streams[stream]->size();
}

const Sample& ReplayMerge::head(std::size_t stream) const {
    return (*streams[stream])[positions[stream]];
}

const Sample* ReplayMerge::next(std::size_t& stream) {
    if (streams.empty()) {
        return nullptr;
    }
    pickEarliest();
    if (isUsedUp(pick) && !pickAnyLeft()) {
        return nullptr;
    }
    stream = pick;
    const Sample& sample = head(pick);
    ++positions[pick];
    lastTime = sample.timestamp;
    return &sample;
}

// Leaves the pick as it was if no stream qualifies.
void ReplayMerge::pickEarliest() {
    double earliest = horizon;
    horizon = kLatestCompared;
    for (std::size_t i = 0; i < streams.size(); ++i) {
        if (isUsedUp(i)) {
            continue;
        }
        const double t = head(i).timestamp;
        if (t >= lastTime && earliest >= t) {
            pick = i;
            earliest = t;
        }
    }
}

// The stream whose next sample is the earliest of all that are left.
bool ReplayMerge::pickAnyLeft() {
    bool found = false;
    for (std::size_t i = 0; i < streams.size(); ++i) {
        if (!isUsedUp(i) && (!found || head(i).timestamp <= head(pick).timestamp)) {
            pick = i;
            found = true;
        }
    }
    return found;
}

}  // namespace tavocal
