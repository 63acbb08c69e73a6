#pragma once

#include <cstddef>
#include <vector>

#include "numerics/Sample.h"

namespace tavocal {

// Merges the samples of several sensors by time. At equal times the later stream goes first.
class ReplayMerge {
  public:
    // The streams must stay alive and unchanged; a null stream is empty.
    explicit ReplayMerge(std::vector<const std::vector<Sample>*> streams);

    // The next sample, with its stream's index. Null when all streams are used up. A sample that
    // lies beyond what a replay compares (2147483647 ms) is taken once its stream is the one that
    // was taken from last, or nothing else is left.
    const Sample* next(std::size_t& stream);

  private:
    bool isUsedUp(std::size_t stream) const;
    const Sample& head(std::size_t stream) const;
    void pickEarliest();
    bool pickAnyLeft();

    std::vector<const std::vector<Sample>*> streams;
    std::vector<std::size_t> positions;
    std::size_t pick = 0;
    double lastTime = 0.0;
    double horizon;
};

}  // namespace tavocal
