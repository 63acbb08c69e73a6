#pragma once

namespace tavocal {

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
