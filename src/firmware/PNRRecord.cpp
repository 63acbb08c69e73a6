#include "firmware/PNRRecord.h"

#include <utility>

#include "firmware/KeluBase.h"
#include "firmware/MakeKelu.h"

namespace tavocal {

PNRRecord& PNRRecord::instance() {
    static auto* const record = new PNRRecord([] { return makeKelu(); });
    return *record;
}

PNRRecord::PNRRecord(ChannelFactory channelFactory, PnrTiming sessionTiming,
                     const Patience& sessionPatience)
    : makeChannel(std::move(channelFactory)), timing(sessionTiming), patience(sessionPatience) {}

bool PNRRecord::start(SampleReceiver& receiver) {
    return session()->start(receiver);
}

bool PNRRecord::stop() {
    return session()->stop();
}

void PNRRecord::endSession() {
    std::shared_ptr<PNRRecordPrivate> ending;
    {
        const std::lock_guard<std::mutex> lock(sessionMutex);
        ending.swap(current);
    }
    // Goes with `ending`, outside the lock: it may have to wait for the firmware.
}

std::shared_ptr<PNRRecordPrivate> PNRRecord::session() {
    const std::lock_guard<std::mutex> lock(sessionMutex);
    if (!current) {
        current = std::make_shared<PNRRecordPrivate>(makeChannel(), timing, patience);
    }
    return current;
}

}  // namespace tavocal
