#pragma once

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

    explicit PNRRecord(ChannelFactory channelFactory, PnrTiming sessionTiming = {},
                       const Patience& sessionPatience = Patience::instance());

    // As of PNRRecordPrivate.
    bool start(SampleReceiver& receiver);
    bool stop();

    // Deletes the session, which stops it once more. A session that another thread is still
    // stopping lives until that thread is through.
    void endSession();

  private:
    std::shared_ptr<PNRRecordPrivate> session();

    ChannelFactory makeChannel;
    PnrTiming timing;
    const Patience& patience;
    std::mutex sessionMutex;  // guards only the pointer
    std::shared_ptr<PNRRecordPrivate> current;
};

}  // namespace tavocal
