#pragma once

#include <limits>
#include <vector>

namespace tavocal {

// The rules of a series of light levels in lux, whoever gives it: each at least the lowest level,
// all rising or all falling, neighbours at least the smallest delta apart. Who asks for them says
// in which order they count and how a broken one is told.
constexpr int kLowestLightLevel = 1;
constexpr int kSmallestLevelDelta = 300;
// No longer series of ints is like that.
constexpr int kMostLightLevels =
    (std::numeric_limits<int>::max() - kLowestLightLevel) / kSmallestLevelDelta + 1;

using LevelSeries = std::vector<int>;

// The first level that is too low, or the end.
LevelSeries::const_iterator tooLowLevel(const LevelSeries& levels);
// The first two levels set the direction, which a later one leaves. Equal levels don't rise.
bool levelsTurn(const LevelSeries& levels);
// Two neighbours are too close. Safe for any two numbers.
bool levelsTooClose(const LevelSeries& levels);

// The true light levels of an ambient light run as they come in, one before each step.
class LightLevels {
  public:
    // Takes the next level. Throws CalibrationException for one that breaks a rule; then it is not
    // taken.
    void accept(int level);

  private:
    LevelSeries levels;
};

}  // namespace tavocal
