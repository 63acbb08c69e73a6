#include "sensors/light/LightLevels.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

#include "base/Failures.h"

namespace tavocal {

LevelSeries::const_iterator tooLowLevel(const LevelSeries& levels) {
    return std::find_if(levels.begin(), levels.end(),
                        [](int level) { return level < kLowestLightLevel; });
}

bool levelsTurn(const LevelSeries& levels) {
    const auto turns = [&levels](int previous, int level) {
        return (level > previous) != (levels[1] > levels[0]);
    };
    return std::adjacent_find(levels.begin(), levels.end(), turns) != levels.end();
}

bool levelsTooClose(const LevelSeries& levels) {
    const auto close = [](int previous, int level) {
        return std::abs(std::int64_t{level} - previous) < kSmallestLevelDelta;
    };
    return std::adjacent_find(levels.begin(), levels.end(), close) != levels.end();
}

void LightLevels::accept(int level) {
    LevelSeries series = levels;
    series.push_back(level);
    if (tooLowLevel(series) != series.end()) {
        throw CalibrationException("Invalid light value " + std::to_string(level) +
                                   ". Value should be bigger than " +
                                   std::to_string(kLowestLightLevel) + "(lux)");
    }
    if (levelsTooClose(series)) {
        throw CalibrationException("Invalid delta between light levels. Minimum delta is " +
                                   std::to_string(kSmallestLevelDelta));
    }
    if (levelsTurn(series)) {
        throw CalibrationException(
            "Invalid delta between light levels. levels should be ascending or descending");
    }
    levels = std::move(series);
}

}  // namespace tavocal
