#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

#include "base/Patience.h"
#include "firmware/KeluBase.h"
#include "firmware/RecordWorker.h"
#include "firmware/SampleReceiver.h"
#include "firmware/SmhiMessages.h"
#include "firmware/StopRequest.h"

namespace tavocal {

// How long the session waits for what, where the channel's time-out isn't the bound.
struct PnrTiming {
    // After a request that the firmware refused.
    std::chrono::milliseconds afterRefusal{10};
    // For the next message of a firmware that publishes, before a stop breaks the worker's read.
    std::chrono::milliseconds stopGrace{500};
};

// The record session with the firmware: start, stop, and the end of what a crashed run has left.
//
// Threads: `start` and `stop` may be called from any but the worker's, which means also not from
// within the receiver's operations; the destructor when nobody else is in a call. One lock,
// controlMutex, is held for the whole of each; StopRequest has one of its own, which is a leaf.
// SmhiExceptions of the channel pass through both.
class PNRRecordPrivate {
  public:
    // REQUIRES: the patience, which is the channel's too, outlives the session. Once it has ended,
    // what a crashed run has left is discarded no longer.
    PNRRecordPrivate(std::shared_ptr<KeluBase> sessionChannel, PnrTiming sessionTiming,
                     const Patience& sessionPatience);
    PNRRecordPrivate(const PNRRecordPrivate&) = delete;
    PNRRecordPrivate& operator=(const PNRRecordPrivate&) = delete;
    // Stops once more, so that the firmware is left without a session; a failure of that goes to
    // the log only. A firmware that left the last stop unanswered isn't asked again.
    ~PNRRecordPrivate();

    // Ends whatever session is open, here or in the firmware, and opens a new one, whose samples go
    // to `receiver` from then on. True if the session runs. The receiver must outlive the session.
    bool start(SampleReceiver& receiver);

    // True if the session ended cleanly, or none was open here and none is open in the firmware
    // any more. It lasts until the firmware has answered, whatever it publishes before that, or has
    // been silent for the channel's time-out; at most until the patience is over.
    // While another thread stops the session, waits for that thread and gives true.
    bool stop();

  private:
    // With controlMutex held.
    bool isRecording() const { return worker != nullptr; }
    bool endSession();
    bool stopRecording();
    void awaitWorker();
    bool closeLeftOverSession();
    bool requestStart();
    // Of the next message; nothing if that was too short.
    std::optional<smhi::Header> readReply();

    std::shared_ptr<KeluBase> channel;
    PnrTiming timing;
    const Patience& patience;

    // Guards worker and stopUnanswered.
    std::mutex controlMutex;
    bool stopUnanswered = false;
    StopRequest stopRequest;
    std::unique_ptr<RecordWorker> worker;
    // How many recordings have been stopped.
    std::atomic<unsigned> finishedStops{0};
};

}  // namespace tavocal
