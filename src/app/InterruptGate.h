#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace tavocal {

// What an interrupt may not cut off, between the main thread and the interrupt's: a start or stop
// of sampling, a dump, the blocks on their way into the firmware, the run's last words. Whichever
// thread has the word last ends the process; the other one stays in its call for good.
//
// A gate must never be destroyed while a process uses it: threads stay in it.
class InterruptGate {
  public:
    // The process's own.
    static InterruptGate& instance();

    // ---- The main thread ----

    // Does `work`, which an interrupt then waits for. Once an interrupt has come it neither begins
    // nor returns. Not to be nested.
    void pass(const std::function<void()>& work);

    // The run is over, and its own status stands. Doesn't return if an interrupt came before.
    void endRun();

    // ---- The interrupt thread, in this order ----

    // Doesn't return if the run is over.
    void announce();
    // True as soon as no work is under way, which is so from then on; false if there is some still
    // after `time`.
    bool close(std::chrono::milliseconds time);

  private:
    enum class Word { Open, Interrupt, MainThread };

    // Stays there if it isn't the caller's turn any more. Needs the lock held.
    void stayUnless(bool mayGoOn, std::unique_lock<std::mutex>& lock);
    void enter();
    void leave();

    std::mutex mutex;  // a leaf
    std::condition_variable changed;
    Word word = Word::Open;
    bool working = false;
};

}  // namespace tavocal
