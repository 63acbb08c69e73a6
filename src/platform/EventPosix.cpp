#include <condition_variable>
#include <mutex>

#include "platform/Event.h"

namespace tavocal::platform {

namespace {

class SyncObjectPosix : public SyncObject {
  public:
    void wait() override {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [this] { return signalled; });
    }

    void reset() override {
        const std::lock_guard<std::mutex> lock(mutex);
        signalled = false;
    }

    // Notifies under the lock: a waiter may destroy the event as soon as it gets through.
    void set() override {
        const std::lock_guard<std::mutex> lock(mutex);
        signalled = true;
        changed.notify_all();
    }

    bool waitFor(std::chrono::milliseconds time) override {
        std::unique_lock<std::mutex> lock(mutex);
        return changed.wait_for(lock, time, [this] { return signalled; });
    }

  private:
    std::mutex mutex;
    std::condition_variable changed;
    bool signalled = false;
};

}  // namespace

std::unique_ptr<SyncObject> makeSyncObject() {
    return std::make_unique<SyncObjectPosix>();
}

}  // namespace tavocal::platform
