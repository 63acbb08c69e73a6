#pragma once

#include <chrono>
#include <memory>
#include <mutex>

#include "firmware/KeluBase.h"
#include "platform/Event.h"

namespace tavocal {

// The stop of a recording, between whoever wants it and the worker, which alone reads the channel
// meanwhile. One lock guards its state. Any thread may call, but for what a heading says.
class StopRequest {
  public:
    // REQUIRES: the channel outlives the request.
    explicit StopRequest(KeluBase& workerChannel);

    // ---- Whoever starts and stops the recording ----

    // REQUIRES: no worker runs. One has to be started behind it.
    void reset();
    void ask() { change(StopState::None, StopState::Asked); }
    // Breaks the worker's read if the worker hasn't looked at the request yet.
    void wakeWorker();
    // True if the worker has ended within that time.
    bool waitForEnd(std::chrono::milliseconds time) { return exitEvent->waitFor(time); }
    void waitForEnd() { exitEvent->wait(); }

    // ---- The worker ----

    bool isAsked() const { return state() != StopState::None; }
    void setSent() { change(StopState::Asked, StopState::Sent); }
    // The worker's last act.
    void setEnded();

  private:
    enum class StopState {
        None,
        Asked,
        Sent,   // to the firmware
        Ended,  // with or without a stop
    };

    StopState state() const;
    void change(StopState from, StopState to);

    KeluBase& channel;
    mutable std::mutex mutex;  // a leaf, but for what cancelRead does
    StopState stopState = StopState::Ended;
    std::unique_ptr<platform::SyncObject> exitEvent;
};

}  // namespace tavocal
