#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "base/Failures.h"
#include "firmware/KeluBase.h"

namespace tavocal::test {

// A channel to a scripted firmware. Reads take the script's messages in order; behind the last one
// a read fails like a time-out, or waits for more if `patient` is set. It records what was written
// and how often it was connected and closed.
class FakeKelu : public KeluBase {
  public:
    // What the firmware does when a request arrives, such as say(...). Runs on the writing thread.
    std::function<void(const Bytes&)> onWrite = [](const Bytes&) {};
    bool patient = false;
    std::string connectFailure;
    bool connected = false;
    int connects = 0, closes = 0, cancels = 0;

    void say(Bytes message) { push(std::move(message), {}); }
    void fail(const std::string& text) { push({}, text); }

    std::vector<Bytes> written() const {
        const std::lock_guard<std::mutex> lock(mutex);
        return requests;
    }
    // Until a reader has taken every message and waits for another.
    void waitUntilBlocked() {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [this] { return blocked; });
    }

    void Connect() override {
        const std::lock_guard<std::mutex> lock(mutex);
        connects += connected ? 0 : 1;
        connected = true;
        if (!connectFailure.empty()) {
            throw SmhiException(connectFailure);
        }
    }

    void Write(const Bytes& data) override {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            requests.push_back(data);
        }
        onWrite(data);
    }

    void Read(Bytes& output, std::uint32_t maximum) override {
        std::unique_lock<std::mutex> lock(mutex);
        blocked = patient && script.empty() && !cancelled;
        changed.notify_all();
        changed.wait(lock, [this] { return !patient || !script.empty() || cancelled; });
        if (std::exchange(cancelled, false)) {
            throw SmhiException("Failed to read from device, cancelled");
        }
        if (script.empty()) {
            throw SmhiException("Failed to read from device, timed out");
        }
        const auto [message, failure] = std::move(script.front());
        script.pop_front();
        if (!failure.empty()) {
            throw SmhiException(failure);
        }
        output = message;
        output.resize(std::min<std::size_t>(output.size(), maximum));
    }

    void Close() override {
        const std::lock_guard<std::mutex> lock(mutex);
        connected = cancelled = false;
        ++closes;
    }

    void cancelRead() noexcept override {
        const std::lock_guard<std::mutex> lock(mutex);
        cancelled = true;
        blocked = false;
        ++cancels;
        changed.notify_all();
    }

  private:
    void push(Bytes message, const std::string& failure) {
        const std::lock_guard<std::mutex> lock(mutex);
        script.emplace_back(std::move(message), failure);
        blocked = false;
        changed.notify_all();
    }

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::pair<Bytes, std::string>> script;  // a message, or the text of a failure
    std::vector<Bytes> requests;
    bool blocked = false, cancelled = false;
};

}  // namespace tavocal::test
