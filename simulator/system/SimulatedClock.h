#pragma once

namespace tavocal::simulator {

// Simulated time, which goes `speed` times faster than real time, but in no larger steps than can
// be told from standing still. Whatever holds it up is not made good later. All times in seconds.
class SimulatedClock {
  public:
    // REQUIRES: theSpeed above 0.
    explicit SimulatedClock(double theSpeed) : speed(theSpeed) {}

    double now() const { return time; }
    // Goes on by the real time that has passed since the call before. `realSeconds` may have any
    // origin.
    void tick(double realSeconds);
    // The same, but simulated time stands still.
    void hold(double realSeconds);

    // Real seconds between two ticks that keep the steps small.
    double tickSeconds() const;

  private:
    double speed;
    double time = 0.0;
    double lastReal = 0.0;
    bool started = false;
};

}  // namespace tavocal::simulator
