#include <windows.h>

#include <algorithm>
#include <system_error>

#include "platform/Event.h"

namespace tavocal::platform {

namespace {

[[noreturn]] void throwLastError() {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

class SyncObjectWin : public SyncObject {
  public:
    SyncObjectWin() : event(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        if (event == nullptr) {
            throwLastError();
        }
    }
    SyncObjectWin(const SyncObjectWin&) = delete;
    SyncObjectWin& operator=(const SyncObjectWin&) = delete;
    ~SyncObjectWin() override { CloseHandle(event); }

    void wait() override { waitMilliseconds(INFINITE); }
    void reset() override { ResetEvent(event); }
    void set() override { SetEvent(event); }

    bool waitFor(std::chrono::milliseconds time) override {
        // One below the value that stands for no time-out at all.
        const auto longest = std::chrono::milliseconds::rep{INFINITE - 1};
        const auto bounded = std::clamp(time.count(), std::chrono::milliseconds::rep{0}, longest);
        return waitMilliseconds(static_cast<DWORD>(bounded));
    }

  private:
    bool waitMilliseconds(DWORD time) {
        const DWORD result = WaitForSingleObject(event, time);
        if (result == WAIT_FAILED) {
            throwLastError();
        }
        return result == WAIT_OBJECT_0;
    }

    HANDLE event;
};

}  // namespace

std::unique_ptr<SyncObject> makeSyncObject() {
    return std::make_unique<SyncObjectWin>();
}

}  // namespace tavocal::platform
