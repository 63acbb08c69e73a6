#include "firmware/PNRRecordPrivate.h"

#include <exception>
#include <string>
#include <utility>

#include "base/Failures.h"
#include "firmware/KeluBase.h"
#include "firmware/PnrBuffer.h"
#include "firmware/SampleReceiver.h"
#include "firmware/SmhiLayout.h"
#include "log/Logger.h"

namespace tavocal {

namespace {

constexpr const char* kStart = "PNRRecordPrivate::start";
constexpr const char* kStop = "PNRRecordPrivate::stop";
constexpr const char* kWorker = "PNRRecordPrivate::WorkerThread";

// More than the firmware can have stored: a bound for one that goes on publishing.
constexpr int kMaximumLeftOverBuffers = 1000;

std::string acknowledgementText(const smhi::Header& header) {
    return "ACK  header.command= " + std::to_string(header.command) +
           " header.status = " + std::to_string(header.status) +
           " header.is_response = " + std::to_string(int{header.isResponse});
}

std::string stopRequestText() {
    return "Send PNR session control request, req.typ=" + std::to_string(smhi::kSessionType) +
           " req.state = " + std::to_string(smhi::kSessionStop);
}

bool isBuffer(const std::optional<smhi::Header>& header) {
    return header && header->command == smhi::SMHI_PNR_REC_PUBLISH_BUF;
}

}  // namespace

PNRRecordPrivate::PNRRecordPrivate(std::shared_ptr<KeluBase> sessionChannel,
                                   PnrTiming sessionTiming)
    : channel(std::move(sessionChannel)),
      timing(sessionTiming),
      exitEvent(platform::makeSyncObject()) {}

PNRRecordPrivate::~PNRRecordPrivate() {
    try {
        const std::lock_guard<std::mutex> lock(controlMutex);
        if (!firmwareSilent) {
            TAVOCAL_LOG(Debug, kStop, "Enter PNRRecordPrivate::stop");
            endSession();
        }
    } catch (const std::exception& failure) {
        TAVOCAL_LOG(Warning, kStop, failure.what());
    }
}

bool PNRRecordPrivate::start(SampleReceiver& receiver) {
    const std::lock_guard<std::mutex> lock(controlMutex);
    TAVOCAL_LOG(Debug, kStop, "Enter PNRRecordPrivate::stop");
    if (!endSession()) {
        return false;
    }
    manager = &receiver;
    TAVOCAL_LOG(Info, kStart, "Start recording");
    if (!requestStart()) {
        TAVOCAL_LOG(Error, kStart, "Start recording failed !");
        notifyCode = NotifyCode::StartFailed;
        std::this_thread::sleep_for(timing.afterRefusal);
        return false;
    }
    startWorker();
    isRecording = true;
    return true;
}

// A reply of another kind is a success: the firmware may publish ahead of its answer.
bool PNRRecordPrivate::requestStart() {
    channel->Connect();
    TAVOCAL_LOG(
        Debug, kStart,
        "Send PNR session control request, req.type= " + std::to_string(smhi::kSessionType) +
            "req.state= " + std::to_string(smhi::kSessionStart));
    channel->Write(smhi::startSessionRequest());
    const Header header = readReply();
    if (!header) {
        return false;
    }
    TAVOCAL_LOG(Debug, kStart, acknowledgementText(*header));
    if (header->command == smhi::SMHI_PNR_SESSION_CONTROL_ID && header->status != smhi::kSuccess) {
        TAVOCAL_LOG(
            Error, kStart,
            "PNR session control request ACK error, status=" + std::to_string(header->status));
        return false;
    }
    return true;
}

void PNRRecordPrivate::startWorker() {
    running = true;
    damageLogged = false;
    stopState = StopState::None;
    wakeUp = false;
    gaveUp = false;
    exitEvent->reset();
    worker = std::thread(&PNRRecordPrivate::WorkerThread, this);
}

bool PNRRecordPrivate::stop() {
    const unsigned stopsBefore = finishedStops;
    TAVOCAL_LOG(Debug, kStop, "Enter PNRRecordPrivate::stop");
    const std::lock_guard<std::mutex> lock(controlMutex);
    // Another thread has stopped the recording meanwhile.
    if (finishedStops != stopsBefore) {
        return true;
    }
    return endSession();
}

bool PNRRecordPrivate::endSession() {
    const bool ended = isRecording ? stopRecording() : closeLeftOverSession();
    TAVOCAL_LOG(Debug, kStop, "Exit PNRRecordPrivate::stop");
    return ended;
}

bool PNRRecordPrivate::stopRecording() {
    stopState = StopState::Asked;
    TAVOCAL_LOG(Info, kStop, "Stop recording");
    awaitWorker();
    worker.join();
    TAVOCAL_LOG(Info, kStop, "record Stopped");
    const bool clean = stopState == StopState::Acknowledged;
    isRecording = false;
    stopState = StopState::None;
    firmwareSilent = gaveUp;
    ++finishedStops;
    channel->Close();
    return clean;
}

// A firmware that publishes lets the worker look at stopState with each message. A silent one has
// to be left alone: first the read that waits for its samples, then the one that waits for its
// answer.
void PNRRecordPrivate::awaitWorker() {
    if (exitEvent->waitFor(timing.stopGrace)) {
        return;
    }
    if (stopState == StopState::Asked) {
        wakeUp = true;
        channel->cancelRead();
    }
    if (exitEvent->waitFor(timing.acknowledgement)) {
        return;
    }
    gaveUp = true;
    channel->cancelRead();
    exitEvent->wait();
}

// What a crashed earlier run left in the firmware.
bool PNRRecordPrivate::closeLeftOverSession() {
    channel->Connect();
    TAVOCAL_LOG(Debug, kStop, stopRequestText());
    channel->Write(smhi::stopSessionRequest());
    Header header = readReply();
    if (header) {
        TAVOCAL_LOG(Debug, kStop, acknowledgementText(*header));
    }
    for (int discarded = 0; isBuffer(header) && discarded < kMaximumLeftOverBuffers; ++discarded) {
        TAVOCAL_LOG(Debug, kStop, "Discard the FW left available buffer due to abnormal app exit!");
        header = readReply();
    }
    const bool answered = smhi::isAnswerTo(header, smhi::SMHI_PNR_SESSION_CONTROL_ID);
    if (!answered) {
        TAVOCAL_LOG(Error, kStop, "Unexpected response for SMHI_PNR_SESSION_CONTROL_ID command!");
    } else if (header->status == smhi::kSuccess) {
        TAVOCAL_LOG(Debug, kStop, "PNR session was in use and get closed now.");
    } else {
        TAVOCAL_LOG(Debug, kStop, "PNR session was not in use.");
    }
    channel->Close();
    firmwareSilent = false;
    return answered;
}

PNRRecordPrivate::Header PNRRecordPrivate::readReply() {
    Bytes reply;
    channel->Read(reply, smhi::kMaximumMessage);
    return smhi::readHeader(reply);
}

void PNRRecordPrivate::WorkerThread() {
    try {
        recordAndReport();
        TAVOCAL_LOG(Debug, kWorker, "record WorkerThread exit");
    } catch (...) {
        // Not even the report of a failure went through. `stop` has to get through all the same.
    }
    exitEvent->set();
}

void PNRRecordPrivate::recordAndReport() {
    try {
        record();
    } catch (const SmhiException&) {
        failWorker("PNR read from FW failed");
    } catch (const std::exception& failure) {
        failWorker(std::string("PNR session failed: ") + failure.what());
    } catch (...) {
        failWorker("PNR session failed");
    }
}

void PNRRecordPrivate::failWorker(const std::string& reason) {
    TAVOCAL_LOG(Error, kWorker, reason);
    running = false;
    notify();
}

void PNRRecordPrivate::record() {
    Bytes message;
    while (running) {
        if (stopState == StopState::Asked) {
            TAVOCAL_LOG(Debug, kWorker, "PNRRecordPrivate::WorkerThread - STOP_CMD_ISSUED");
            SendStopRecReq();
            stopState = StopState::Sent;
        }
        TAVOCAL_LOG(Insane, kWorker, "Reading KELU SMHI message...");
        if (readMessage(message)) {
            handleMessage(message);
        }
    }
}

void PNRRecordPrivate::SendStopRecReq() {
    TAVOCAL_LOG(Debug, "PNRRecordPrivate::SendStopRecReq", stopRequestText());
    channel->Write(smhi::stopSessionRequest());
}

// False if the read was broken for nothing but a look at stopState.
bool PNRRecordPrivate::readMessage(Bytes& message) {
    try {
        channel->Read(message, smhi::kMaximumMessage);
        return true;
    } catch (const SmhiException&) {
        if (!gaveUp && wakeUp.exchange(false)) {
            return false;
        }
        throw;
    }
}

void PNRRecordPrivate::handleMessage(const Bytes& message) {
    const auto header = smhi::readHeader(message);
    if (header) {
        TAVOCAL_LOG(Insane, kWorker,
                    "Get message, header.command=" + std::to_string(header->command) +
                        "size= " + std::to_string(message.size()));
    }
    if (isBuffer(header)) {
        handleBuffer(message);
    } else if (smhi::isAnswerTo(header, smhi::SMHI_PNR_SESSION_CONTROL_ID) && isStopping()) {
        handleStopAnswer(header->status);
    } else {
        handleOther(message);
    }
}

// An empty message is none at all and not worth a log line.
void PNRRecordPrivate::handleOther(const Bytes& message) {
    if (!message.empty()) {
        TAVOCAL_LOG(Info, kWorker,
                    "Not a SMHI_PNR_REC_PUBLISH_BUF or SMHI_PNR_SESSION_CONTROL_ID message !");
    }
    if (isStopping()) {
        running = false;
    }
}

void PNRRecordPrivate::handleBuffer(const Bytes& message) {
    if (isStopping()) {
        stopState = StopState::Draining;
        TAVOCAL_LOG(Debug, kWorker,
                    "pnr record session stop req has been issued, FW publish the left available "
                    "buffer");
    }
    PnrBuffer buffer(message);
    while (const auto next = buffer.next()) {
        deliver(*next);
    }
    if (buffer.isDamaged() && !damageLogged) {
        damageLogged = true;
        TAVOCAL_LOG(Warning, kWorker, "Dropped the rest of a buffer with a damaged record");
    }
}

void PNRRecordPrivate::deliver(const PnrRecord& record) {
    constexpr double kMicrosecondsPerMs = 1000.0;
    const auto target = manager->findSensor(luidText(record.luid));
    if (!target) {
        return;
    }
    values.clear();
    for (std::size_t i = 0; i < record.valueCount(); ++i) {
        values.push_back(static_cast<double>(record.value(i)) / target->rawDivisor);
    }
    manager->handleData(target->sensor, values,
                        static_cast<double>(record.timestamp) / kMicrosecondsPerMs);
}

void PNRRecordPrivate::handleStopAnswer(std::uint8_t status) {
    running = false;
    if (status == smhi::kSuccess) {
        TAVOCAL_LOG(Debug, kWorker, "PNR session control request ACK\n");
        stopState = StopState::Acknowledged;
        return;
    }
    stopState = StopState::Refused;
    TAVOCAL_LOG(Error, kWorker,
                "PNR session control request ACK error, Stop recording failed status= " +
                    std::to_string(status));
    notifyCode = NotifyCode::StopFailed;
    std::this_thread::sleep_for(timing.afterRefusal);
    notify();
}

void PNRRecordPrivate::notify() {
    TAVOCAL_LOG(Error, "PNRRecordPrivate::notify",
                "Notify: " + std::to_string(static_cast<int>(notifyCode)));
    notifyCode = NotifyCode::None;
    manager->stageDone(false);
}

bool PNRRecordPrivate::isStopping() const {
    return stopState == StopState::Sent || stopState == StopState::Draining;
}

}  // namespace tavocal
