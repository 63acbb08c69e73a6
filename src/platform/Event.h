#pragma once

#include <chrono>
#include <memory>

namespace tavocal::platform {

// A manual-reset event between threads: `set` lets every waiter through, now and later, until
// `reset`. What the thread that sets it did before is visible to whoever got through. A failure of
// the system throws std::system_error with its error code.
class SyncObject {
  public:
    virtual ~SyncObject() = default;

    virtual void wait() = 0;
    virtual void reset() = 0;
    virtual void set() = 0;
    // True if the event was set within `time`.
    [[nodiscard]] virtual bool waitFor(std::chrono::milliseconds time) = 0;
};

// A new event, not set.
std::unique_ptr<SyncObject> makeSyncObject();

}  // namespace tavocal::platform
