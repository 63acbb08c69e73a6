#pragma once

#include <chrono>
#include <functional>

namespace tavocal {

class InterruptGate;

// The end of the process after an interrupt, with the signal's number as its status: in order if
// that can be had, but soon, whatever hangs. Interrupt thread.
class Interruption {
  public:
    // All from the interrupt on.
    struct Bounds {
        // For the main thread to finish what must not be cut off.
        std::chrono::milliseconds work{7000};
        // For everything. Then what a file being written has left behind is removed, and the
        // process ends at once.
        std::chrono::milliseconds order{8500};
        // For that removal too, if the folder hangs.
        std::chrono::milliseconds removal{9500};
    };

    // `stopRun` stops sampling and saves what was collected; it isn't called if the main thread
    // hangs in the midst of that. All must outlive the process.
    Interruption(InterruptGate& interruptGate, std::function<void()> stopRun);
    Interruption(InterruptGate& interruptGate, std::function<void()> stopRun, Bounds times);

    // Lets a run that is over already end by itself.
    [[noreturn]] void endProcess(int signal) const;

  private:
    void startLastResort(int signal) const;
    void stop() const;

    InterruptGate& gate;
    std::function<void()> stopRun;
    Bounds bounds;
};

}  // namespace tavocal
