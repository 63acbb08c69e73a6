#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/Bytes.h"
#include "firmware/SmhiMessages.h"
#include "platform/Event.h"

namespace tavocal {

class KeluBase;
class SampleReceiver;
struct PnrRecord;

// How long the session waits for what.
struct PnrTiming {
    // After a request that the firmware refused.
    std::chrono::milliseconds afterRefusal{10};
    // For the next message of a firmware that publishes, before a stop breaks the worker's read.
    std::chrono::milliseconds stopGrace{500};
    // For the firmware to acknowledge the stop once it was asked.
    std::chrono::milliseconds acknowledgement{5000};
};

// The record session with the firmware: a worker thread reads the buffers that the firmware
// publishes and hands each record to the receiver.
//
// `start` and `stop` may be called from any thread but the worker, which means also not from within
// the receiver's operations. SmhiExceptions of the channel pass through both.
class PNRRecordPrivate {
  public:
    explicit PNRRecordPrivate(std::shared_ptr<KeluBase> sessionChannel,
                              PnrTiming sessionTiming = {});
    PNRRecordPrivate(const PNRRecordPrivate&) = delete;
    PNRRecordPrivate& operator=(const PNRRecordPrivate&) = delete;
    // Stops once more, so that the firmware is left without a session; a failure of that goes to
    // the log only. A firmware that let the last stop wait in vain isn't asked again.
    ~PNRRecordPrivate();

    // Ends whatever session is open, here or in the firmware, and opens a new one, whose samples go
    // to `receiver` from then on. True if the session runs. The receiver must outlive the session.
    bool start(SampleReceiver& receiver);

    // True if the session ended cleanly, or none was open here and none is open in the firmware
    // any more. A firmware that stays silent delays it by stopGrace and acknowledgement at most.
    // While another thread stops the session, waits for that thread and gives true.
    bool stop();

  private:
    enum class StopState {
        None = 0,
        Asked = 1,         // `stop` asks the worker to stop
        Sent = 2,          // the stop request is sent
        Draining = 3,      // buffers still come in behind the request
        Acknowledged = 4,  // the firmware has ended the session
        Refused = 5,
    };
    enum class NotifyCode { None = 0, StartFailed = 1, StopFailed = 2 };

    // Of a message; nothing if that was too short.
    using Header = std::optional<smhi::Header>;

    // With controlMutex held.
    bool endSession();
    bool stopRecording();
    bool closeLeftOverSession();
    bool requestStart();
    void startWorker();
    void awaitWorker();
    Header readReply();

    // On the worker's thread.
    void WorkerThread();
    void recordAndReport();
    void record();
    void SendStopRecReq();
    bool readMessage(Bytes& message);
    void handleMessage(const Bytes& message);
    void handleBuffer(const Bytes& message);
    void handleStopAnswer(std::uint8_t status);
    void handleOther(const Bytes& message);
    void deliver(const PnrRecord& record);
    void failWorker(const std::string& reason);
    void notify();
    bool isStopping() const;

    std::shared_ptr<KeluBase> channel;
    PnrTiming timing;

    // Held for the whole of a start or stop: guards isRecording, worker and firmwareSilent.
    std::mutex controlMutex;
    bool isRecording = false;
    bool firmwareSilent = false;
    std::thread worker;
    // How many recordings have been stopped.
    std::atomic<unsigned> finishedStops{0};

    // Between `stop` and the worker. The worker alone leaves every state but None.
    std::atomic<StopState> stopState{StopState::None};
    // The next failing read was broken only to make the worker look at stopState.
    std::atomic<bool> wakeUp{false};
    // The next failing read ends the worker, whatever wakeUp says.
    std::atomic<bool> gaveUp{false};
    std::unique_ptr<platform::SyncObject> exitEvent;  // set by the worker as its last act

    // Of the worker while it runs, else of `start`.
    SampleReceiver* manager = nullptr;
    bool running = false;
    bool damageLogged = false;
    NotifyCode notifyCode = NotifyCode::None;
    std::vector<double> values;  // of the record at hand; kept to reuse its memory
};

}  // namespace tavocal
