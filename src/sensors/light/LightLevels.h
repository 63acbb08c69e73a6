#pragma once

#include <limits>

namespace tavocal {

// What a series of light levels must be, whoever gives it: each at least the lowest level, all
// rising or all falling, neighbours at least the smallest delta apart. In lux.
constexpr int kLowestLightLevel = 1;
constexpr int kSmallestLevelDelta = 300;
// No longer series of ints is like that.
constexpr int kMostLightLevels =
    (std::numeric_limits<int>::max() - kLowestLightLevel) / kSmallestLevelDelta + 1;

// Safe for any two numbers.
bool levelsTooClose(int first, int second);

// The true light levels of an ambient light run as they come in, one before each step: they must
// be far enough apart, and all rise or all fall.
class LightLevels {
  public:
    // Takes the level of `step`, counted from 0, in lux. Throws CalibrationException for a level
    // that breaks a rule; then it is not taken.
    void accept(int step, int level);

  private:
    void checkAgainstPrevious(int step, int level);

    int previousLevel = 0;
    bool levelsRising = false;  // fixed by the second level
};

}  // namespace tavocal
