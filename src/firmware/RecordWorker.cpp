#include "firmware/RecordWorker.h"

#include <exception>

#include "base/Failures.h"
#include "firmware/SmhiLayout.h"
#include "firmware/SmhiMessages.h"
#include "log/Logger.h"

namespace tavocal {

namespace {

constexpr const char* kWorker = "PNRRecordPrivate::WorkerThread";
constexpr const char* kReadFailed = "PNR read from FW failed";

}  // namespace

RecordWorker::RecordWorker(KeluBase& sessionChannel, SampleReceiver& sampleReceiver,
                           StopRequest& stopRequest, const Patience& sessionPatience,
                           std::chrono::milliseconds refusalPause)
    : channel(sessionChannel),
      manager(sampleReceiver),
      stop(stopRequest),
      patience(sessionPatience),
      afterRefusal(refusalPause),
      thread(&RecordWorker::WorkerThread, this) {}

RecordWorker::End RecordWorker::join() {
    thread.join();
    return *end;
}

void RecordWorker::WorkerThread() {
    try {
        recordAndReport();
        TAVOCAL_LOG(Debug, kWorker, "record WorkerThread exit");
    } catch (...) {
        // Not even the report of a failure went through. `stop` has to get through all the same.
    }
    stop.setEnded();
}

void RecordWorker::recordAndReport() {
    try {
        record();
    } catch (const ChannelTimeout&) {
        fail(stopSent ? End::Unanswered : End::Failed, kReadFailed);
    } catch (const SmhiException&) {
        fail(End::Failed, kReadFailed);
    } catch (const std::exception& failure) {
        fail(End::Failed, std::string("PNR session failed: ") + failure.what());
    } catch (...) {
        fail(End::Failed, "PNR session failed");
    }
}

void RecordWorker::fail(End reason, const std::string& text) {
    end = reason;
    TAVOCAL_LOG(Error, kWorker, text);
    notify(NotifyCode::None);
}

void RecordWorker::record() {
    Bytes message;
    while (!end) {
        if (!stopSent && stop.isAsked()) {
            TAVOCAL_LOG(Debug, kWorker, "PNRRecordPrivate::WorkerThread - STOP_CMD_ISSUED");
            SendStopRecReq(channel, "PNRRecordPrivate::SendStopRecReq");
            stopSent = true;
            stop.setSent();
        }
        TAVOCAL_LOG(Insane, kWorker, "Reading KELU SMHI message...");
        if (readMessage(message)) {
            handleMessage(message);
        }
        // The firmware may publish for ever.
        if (!end && stopSent && patience.isOver()) {
            fail(End::Unanswered, kReadFailed);
        }
    }
}

void RecordWorker::SendStopRecReq(KeluBase& channel, const char* logName) {
    TAVOCAL_LOG(Debug, logName,
                "Send PNR session control request, req.typ=" + std::to_string(smhi::kSessionType) +
                    " req.state = " + std::to_string(smhi::kSessionStop));
    channel.Write(smhi::stopSessionRequest());
}

// False if the read was broken for nothing but a look at the stop request.
bool RecordWorker::readMessage(Bytes& message) {
    try {
        channel.Read(message, smhi::kMaximumMessage);
        return true;
    } catch (const ReadCancelled&) {
        return false;
    }
}

void RecordWorker::handleMessage(const Bytes& message) {
    const auto header = smhi::readHeader(message);
    if (header) {
        TAVOCAL_LOG(Insane, kWorker,
                    "Get message, header.command=" + std::to_string(header->command) +
                        "size= " + std::to_string(message.size()));
    }
    if (smhi::isBuffer(header)) {
        handleBuffer(message);
    } else if (smhi::isAnswerTo(header, smhi::SMHI_PNR_SESSION_CONTROL_ID) && stopSent) {
        handleStopAnswer(header->status);
    } else {
        handleOther(message);
    }
}

// An empty message is none at all and not worth a log line.
void RecordWorker::handleOther(const Bytes& message) {
    if (!message.empty()) {
        TAVOCAL_LOG(Info, kWorker,
                    "Not a SMHI_PNR_REC_PUBLISH_BUF or SMHI_PNR_SESSION_CONTROL_ID message !");
    }
    if (stopSent) {
        end = End::OddAnswer;
    }
}

void RecordWorker::handleBuffer(const Bytes& message) {
    if (stopSent) {
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

void RecordWorker::deliver(const PnrRecord& record) {
    constexpr double kMicrosecondsPerMs = 1000.0;
    const auto target = manager.findSensor(luidText(record.luid));
    if (!target) {
        return;
    }
    values.clear();
    for (std::size_t i = 0; i < record.valueCount(); ++i) {
        values.push_back(static_cast<double>(record.value(i)) / target->rawDivisor);
    }
    manager.handleData(target->sensor, values,
                       static_cast<double>(record.timestamp) / kMicrosecondsPerMs);
}

void RecordWorker::handleStopAnswer(std::uint8_t status) {
    if (status == smhi::kSuccess) {
        TAVOCAL_LOG(Debug, kWorker, "PNR session control request ACK\n");
        end = End::Acknowledged;
        return;
    }
    end = End::Refused;
    TAVOCAL_LOG(Error, kWorker,
                "PNR session control request ACK error, Stop recording failed status= " +
                    std::to_string(status));
    std::this_thread::sleep_for(afterRefusal);
    notify(NotifyCode::StopFailed);
}

void RecordWorker::notify(NotifyCode code) {
    TAVOCAL_LOG(Error, "PNRRecordPrivate::notify",
                "Notify: " + std::to_string(static_cast<int>(code)));
    manager.stageDone(false);
}

}  // namespace tavocal
