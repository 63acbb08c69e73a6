#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/Bytes.h"
#include "base/Patience.h"
#include "firmware/KeluBase.h"
#include "firmware/PnrBuffer.h"
#include "firmware/SampleReceiver.h"
#include "firmware/StopRequest.h"

namespace tavocal {

// The thread of a record session: reads the buffers that the firmware publishes and hands each
// record to the receiver, until the session has ended. Once a stop is asked it sends the request;
// what is published until the firmware's answer is still delivered.
class RecordWorker {
  public:
    // Why it has ended.
    enum class End {
        Acknowledged,  // the firmware has ended the session
        Refused,       // the firmware goes on
        OddAnswer,   // the firmware said something else to the stop, or nothing in an empty message
        Unanswered,  // the firmware said nothing to the stop until the channel's time-out, or
                     // until the patience was over
        Failed,      // a failure of the channel or of the receiver
    };

    // Starts the thread. After a refused stop it waits for `refusalPause`. REQUIRES: all else
    // outlives the worker; the request is reset.
    RecordWorker(KeluBase& sessionChannel, SampleReceiver& sampleReceiver, StopRequest& stopRequest,
                 const Patience& sessionPatience, std::chrono::milliseconds refusalPause);
    RecordWorker(const RecordWorker&) = delete;
    RecordWorker& operator=(const RecordWorker&) = delete;

    // Asks the firmware to stop, with a line in the log under that name.
    static void SendStopRecReq(KeluBase& channel, const char* logName);

    // Waits for the thread. REQUIRES: to be called once, ahead of the destructor.
    End join();

  private:
    enum class NotifyCode { None = 0, StopFailed = 2 };

    // All on the worker's thread.
    void WorkerThread();
    void recordAndReport();
    void record();
    bool readMessage(Bytes& message);
    void handleMessage(const Bytes& message);
    void handleBuffer(const Bytes& message);
    void handleStopAnswer(std::uint8_t status);
    void handleOther(const Bytes& message);
    void deliver(const PnrRecord& record);
    void fail(End reason, const std::string& text);
    void notify(NotifyCode code);

    KeluBase& channel;
    SampleReceiver& manager;
    StopRequest& stop;
    const Patience& patience;
    std::chrono::milliseconds afterRefusal;

    std::optional<End> end;  // nothing while it runs
    bool stopSent = false;
    bool damageLogged = false;
    std::vector<double> values;  // of the record at hand; kept to reuse its memory
    std::thread thread;          // the last: it uses all the others
};

}  // namespace tavocal
