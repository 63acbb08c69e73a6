#pragma once

#include <vector>

namespace tavocal::simulator {

// The lamp of a light rig: it goes from level to level without a jump and then settles. Levels are
// in lux, times in seconds. One thread at a time.
class Lamp {
  public:
    // It shines at `firstLevel` from the beginning. A change takes `rampTime`, above 0; what is
    // left of it then, two hundredths, fades with a time constant of half a second.
    Lamp(double firstLevel, double rampTime);

    // REQUIRES: no earlier than the change before it.
    void changeTo(double level, double seconds);
    // How far the light swings around its level from `seconds` on, about as often as mains light
    // does. REQUIRES: no earlier than the setting before it.
    void setFlicker(double lux, double seconds);

    double luxAt(double seconds) const;

  private:
    struct Change {
        double begin;
        double from;
        double to;
    };
    struct Flicker {
        double begin;
        double lux;
    };

    double steadyLuxAt(double seconds) const;
    double flickerAt(double seconds) const;

    double rampSeconds;
    std::vector<Change> changes;
    std::vector<Flicker> flickers;
};

}  // namespace tavocal::simulator
