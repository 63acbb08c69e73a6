#include "firmware/PNRRecordPrivate.h"

#include <exception>
#include <string>
#include <thread>
#include <utility>

#include "firmware/SmhiLayout.h"
#include "log/Logger.h"

namespace tavocal {

namespace {

constexpr const char* kStart = "PNRRecordPrivate::start";
constexpr const char* kStop = "PNRRecordPrivate::stop";

std::string acknowledgementText(const smhi::Header& header) {
    return "ACK  header.command= " + std::to_string(header.command) +
           " header.status = " + std::to_string(header.status) +
           " header.is_response = " + std::to_string(int{header.isResponse});
}

}  // namespace

PNRRecordPrivate::PNRRecordPrivate(std::shared_ptr<KeluBase> sessionChannel,
                                   PnrTiming sessionTiming, const Patience& sessionPatience)
    : channel(std::move(sessionChannel)),
      timing(sessionTiming),
      patience(sessionPatience),
      stopRequest(*channel) {}

PNRRecordPrivate::~PNRRecordPrivate() {
    try {
        const std::lock_guard<std::mutex> lock(controlMutex);
        if (!stopUnanswered) {
            TAVOCAL_LOG(Debug, kStop, "Enter PNRRecordPrivate::stop");
            endSession();
        }
    } catch (const std::exception& failure) {
        TAVOCAL_LOG(Warning, kStop, failure.what());
    }
}

// ---- Start ----

bool PNRRecordPrivate::start(SampleReceiver& receiver) {
    const std::lock_guard<std::mutex> lock(controlMutex);
    TAVOCAL_LOG(Debug, kStop, "Enter PNRRecordPrivate::stop");
    if (!endSession()) {
        return false;
    }
    TAVOCAL_LOG(Info, kStart, "Start recording");
    if (!requestStart()) {
        TAVOCAL_LOG(Error, kStart, "Start recording failed !");
        std::this_thread::sleep_for(timing.afterRefusal);
        return false;
    }
    stopRequest.reset();
    worker = std::make_unique<RecordWorker>(*channel, receiver, stopRequest, patience,
                                            timing.afterRefusal);
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
    const auto header = readReply();
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

std::optional<smhi::Header> PNRRecordPrivate::readReply() {
    Bytes reply;
    channel->Read(reply, smhi::kMaximumMessage);
    return smhi::readHeader(reply);
}

// ---- Stop ----

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
    const bool ended = isRecording() ? stopRecording() : closeLeftOverSession();
    TAVOCAL_LOG(Debug, kStop, "Exit PNRRecordPrivate::stop");
    return ended;
}

bool PNRRecordPrivate::stopRecording() {
    stopRequest.ask();
    TAVOCAL_LOG(Info, kStop, "Stop recording");
    awaitWorker();
    const RecordWorker::End end = worker->join();
    worker.reset();
    TAVOCAL_LOG(Info, kStop, "record Stopped");
    stopUnanswered = end == RecordWorker::End::Unanswered;
    ++finishedStops;
    channel->Close();
    return end == RecordWorker::End::Acknowledged;
}

// A firmware that publishes lets the worker look at the request with each message; of a silent one
// the read has to be broken.
void PNRRecordPrivate::awaitWorker() {
    if (!stopRequest.waitForEnd(timing.stopGrace)) {
        stopRequest.wakeWorker();
        stopRequest.waitForEnd();
    }
}

// What a crashed earlier run left in the firmware.
bool PNRRecordPrivate::closeLeftOverSession() {
    channel->Connect();
    RecordWorker::SendStopRecReq(*channel, kStop);
    auto header = readReply();
    if (header) {
        TAVOCAL_LOG(Debug, kStop, acknowledgementText(*header));
    }
    while (smhi::isBuffer(header) && !patience.hasEnded()) {
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
    stopUnanswered = false;
    return answered;
}

}  // namespace tavocal
