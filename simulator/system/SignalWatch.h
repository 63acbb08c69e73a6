#pragma once

namespace tavocal::simulator {

// The signals that ask a program to end, and the one that tells of a child's end, as a descriptor
// to wait on instead of something that breaks in. There may be one at a time, made before any other
// thread; its end lets the signals in again.
class SignalWatch {
  public:
    // Throws std::runtime_error.
    SignalWatch();
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    int file() const { return signalFile; }
    // The number of a signal that asks this program to end, or 0. Does not wait.
    int take();

  private:
    int signalFile;
};

}  // namespace tavocal::simulator
