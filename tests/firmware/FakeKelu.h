#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "base/Failures.h"
#include "firmware/KeluBase.h"

namespace tavocal::test {

// A channel to a scripted firmware. Reads take the script's messages in order; behind the last one
// a read fails, or waits for more if `patient` is set. It records what was written and how often it
// was connected and closed.
class FakeKelu : public KeluBase {
  public:
    // What the firmware does when a request arrives, such as say(...). Runs on the writing thread.
    std::function<void(const Bytes&)> onWrite = [](const Bytes&) {};
    std::function<void()> onConnect = [] {};
    bool patient = false, connected = false;
    int connects = 0, closes = 0, cancels = 0;

    std::vector<Bytes> written() const { return requests; }
    void say(const Bytes& message) {
        next([message] { return message; });
    }
    void fail(const std::string& text) {
        next([text]() -> Bytes { throw SmhiException(text); });
    }
    void timeOut() {
        next([]() -> Bytes { throw ChannelTimeout("Failed to read from device, timed out"); });
    }
    // Runs when it is read.
    void next(const std::function<Bytes()>& turn) {
        change([&] { script.push_back(turn); });
    }
    // Until a reader has taken every message and waits for another.
    void waitUntilBlocked() {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [this] { return blocked; });
    }

    void Connect() override {
        connects += connected ? 0 : 1;
        connected = true;
        onConnect();
    }
    void Write(const Bytes& data) override {
        requests.push_back(data);
        onWrite(data);
    }
    void Read(Bytes& output, std::uint32_t maximum) override {
        std::unique_lock<std::mutex> lock(mutex);
        blocked = patient && script.empty() && !cancelled;
        changed.notify_all();
        changed.wait(lock, [this] { return !blocked; });
        if (std::exchange(cancelled, false)) {
            throw ReadCancelled("Failed to read from device, cancelled");
        }
        if (script.empty()) {
            throw SmhiException("Failed to read from device");
        }
        const auto turn = std::move(script.front());
        script.pop_front();
        output = turn();
        output.resize(std::min<std::size_t>(output.size(), maximum));
    }
    void Close() override {
        connected = cancelled = false;
        ++closes;
    }
    void cancelRead() noexcept override {
        ++cancels;
        change([this] { cancelled = true; });
    }

  private:
    // What the reader waits for.
    void change(const std::function<void()>& action) {
        const std::lock_guard<std::mutex> lock(mutex);
        action();
        blocked = false;
        changed.notify_all();
    }

    std::vector<Bytes> requests;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<Bytes()>> script;
    bool blocked = false, cancelled = false;
};

}  // namespace tavocal::test
