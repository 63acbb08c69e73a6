#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

#include "firmware/PNRRecordPrivate.h"

namespace tavocal {

// The process's one record session. It is made on first use and made anew on the first use after
// endSession. Any thread but the session's own may call.
class PNRRecord {
  public:
    using ChannelFactory = std::function<std::shared_ptr<KeluBase>()>;

    // The one object, over a channel of this platform. It is never destroyed, since another thread
    // may stop the session while `exit` runs.
    static PNRRecord& instance();

    explicit PNRRecord(ChannelFactory channelFactory, PnrTiming sessionTiming = {});

    // As of PNRRecordPrivate.
    bool start(SampleReceiver& receiver);
    bool stop();

    // Deletes the session, which stops it once more. A session that another thread is still
    // stopping lives until that thread is through.
    void endSession();

    // The operator wants the process to end: from now on a stop gives up on a firmware that doesn't
    // acknowledge it, and what a crashed run has left is discarded no longer. Returns when no stop
    // is under way any more, within PnrTiming::acknowledgement. Never taken back.
    void hurry();

  private:
    std::shared_ptr<PNRRecordPrivate> session();

    ChannelFactory makeChannel;
    PnrTiming timing;
    std::atomic<bool> hurried{false};  // read by every session
    std::mutex sessionMutex;           // guards only the pointer
    std::shared_ptr<PNRRecordPrivate> current;
};

}  // namespace tavocal
