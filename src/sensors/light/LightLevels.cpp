#include "sensors/light/LightLevels.h"

#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/Failures.h"

namespace tavocal {

bool levelsTooClose(int first, int second) {
    const std::int64_t delta = std::int64_t{first} - second;
    return std::abs(delta) < kSmallestLevelDelta;
}

void LightLevels::accept(int step, int level) {
    if (level < kLowestLightLevel) {
        throw CalibrationException("Invalid light value " + std::to_string(level) +
                                   ". Value should be bigger than " +
                                   std::to_string(kLowestLightLevel) + "(lux)");
    }
    if (step != 0) {
        checkAgainstPrevious(step, level);
    }
    previousLevel = level;
}

void LightLevels::checkAgainstPrevious(int step, int level) {
    if (levelsTooClose(level, previousLevel)) {
        throw CalibrationException("Invalid delta between light levels. Minimum delta is " +
                                   std::to_string(kSmallestLevelDelta));
    }
    const bool rises = level > previousLevel;
    if (step == 1) {
        levelsRising = rises;
    } else if (rises != levelsRising) {
        throw CalibrationException(
            "Invalid delta between light levels. levels should be ascending or descending");
    }
}

}  // namespace tavocal
