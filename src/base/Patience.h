#pragma once

#include <atomic>
#include <chrono>

namespace tavocal {

// How long the firmware is waited for: as long as a channel's time-out says, until the operator
// wants the process to end, and from then on not for long. Any thread.
class Patience {
  public:
    using Clock = std::chrono::steady_clock;

    struct Bounds {
        // For what is under way when the patience ends.
        std::chrono::milliseconds underWay{5000};
        // For a wait that begins later; one that begins soon has the rest of the time above.
        std::chrono::milliseconds later{500};
    };

    // A wait asks again for its deadline at least as often.
    static constexpr std::chrono::milliseconds kLook{50};

    // Of all channels of this process.
    static Patience& instance();

    Patience() = default;
    explicit Patience(Bounds waits) : bounds(waits) {}

    // Never taken back; the first call counts.
    void end();

    bool hasEnded() const { return endedAt != 0; }
    // What was under way when it ended has had its time.
    bool isOver() const;

    // Of a wait that began at `begin`.
    Clock::time_point deadline(Clock::time_point begin, std::chrono::milliseconds timeout) const;

  private:
    Bounds bounds;
    std::atomic<Clock::rep> endedAt{0};  // of the clock; 0 while it lasts
};

}  // namespace tavocal
