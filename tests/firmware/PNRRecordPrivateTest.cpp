#include "firmware/PNRRecordPrivate.h"

#include <gtest/gtest.h>

#include <future>

#include "FakeKelu.h"
#include "FakeReceiver.h"
#include "base/Logger.h"
#include "base/Text.h"
#include "firmware/PNRRecord.h"
#include "sensors/Luid.h"

namespace tavocal {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

const Bytes kStartRequest = {12, 0, 0, 0, 1, 0, 0};
const Bytes kStopRequest = {12, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
const Bytes kAccepted = {0x8C, 0, 0, 0};
const Bytes kRefused = {0x8C, 0, 0, 3};
const Bytes kOther = {0x84, 0, 0, 0};

constexpr LUID kAccelerometer = {0x0073, 0, 0, 0, 2};
constexpr LUID kLight = {0x0041, 0, 0, 0, 2};
constexpr LUID kStranger = {0x0076, 0, 0, 0, 2};

Bytes record(const LUID& luid, std::uint64_t timestamp, const std::vector<std::int32_t>& values) {
    ByteWriter writer;
    writer.u8(static_cast<std::uint8_t>(17 + 4 * values.size())).append(luidBytes(luid));
    writer.u64(timestamp);
    for (const std::int32_t value : values) {
        writer.i32(value);
    }
    return writer.take();
}

Bytes buffer(const std::vector<Bytes>& records) {
    ByteWriter body;
    for (const Bytes& bytes : records) {
        body.append(bytes);
    }
    return ByteWriter()
        .u32(15)
        .u32(static_cast<std::uint32_t>(body.size()))
        .append(body.take())
        .take();
}

// A record that says it is longer than the buffer.
Bytes damagedBuffer() {
    return buffer({record(kLight, 1, {5}), Bytes(1, 200)});
}

class PNRRecordPrivateTest : public testing::Test {
  protected:
    PNRRecordPrivateTest() {
        kelu->patient = true;
        kelu->onWrite = [this](const Bytes& request) { answer(request); };
        light = receiver.know(luidText(kLight), 1000);
        accelerometer = receiver.know(luidText(kAccelerometer), 1000000);
        logStart = Logger::instance().text().size();
    }

    // A healthy firmware. A test changes what it says to a stop while it records.
    void answer(const Bytes& request) {
        if (request == kStartRequest) {
            firmwareRecords = true;
            kelu->say(kAccepted);
        } else if (!firmwareRecords) {
            kelu->say(kRefused);
        } else {
            firmwareRecords = false;
            for (const Bytes& message : sayToStop) {
                kelu->say(message);
            }
        }
    }

    void start() {
        if (!session) {
            session = std::make_unique<PNRRecordPrivate>(kelu, timing);
        }
        ASSERT_TRUE(session->start(receiver));
    }

    std::string log() const { return Logger::instance().text().substr(logStart); }
    std::size_t logCount(const std::string& text) const {
        const std::string all = log();
        std::size_t count = 0;
        for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) {
            ++count;
        }
        return count;
    }
    // What another thread does on its way shows in the log alone. The pause leaves the log to it.
    void waitForLog(const std::string& text, std::size_t count) const {
        while (logCount(text) < count && !never->waitFor(milliseconds(1))) {
        }
    }

    // The fake firmware is silent between messages, so a stop has no reason for grace.
    PnrTiming timing{milliseconds(0), milliseconds(0), hours(1)};
    std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    FakeReceiver receiver;
    std::shared_ptr<Sensor> light, accelerometer;
    std::vector<Bytes> sayToStop = {kAccepted};
    bool firmwareRecords = false;
    std::size_t logStart = 0;
    std::unique_ptr<platform::SyncObject> never = platform::makeSyncObject();
    std::unique_ptr<PNRRecordPrivate> session;
};

TEST_F(PNRRecordPrivateTest, InterleavedSensorsGetTheirSamplesInOrder) {
    start();
    EXPECT_EQ(kelu->written(), (std::vector<Bytes>{kStopRequest, kStartRequest}));
    kelu->say(buffer({record(kAccelerometer, 1500, {-1000000, 500000, 1}),
                      record(kStranger, 1600, {1, 2, 3}), record(kLight, 1700, {12345}),
                      record(kAccelerometer, 11500, {})}));
    kelu->say(buffer({record(kLight, 0xFFFFFFFFFFFFFFFF, {-1})}));
    EXPECT_TRUE(session->stop());
    EXPECT_EQ(receiver.deliveries, (std::vector<FakeReceiver::Delivery>{
                                       {accelerometer, {-1.0, 0.5, 0.000001}, 1.5},
                                       {light, {12.345}, 1.7},
                                       {accelerometer, {}, 11.5},
                                       {light, {-0.001}, 18446744073709551615.0 / 1000.0}}));
    EXPECT_TRUE(receiver.stages.empty());
    EXPECT_EQ(kelu->written().back(), kStopRequest);
    EXPECT_FALSE(kelu->connected);
}

TEST_F(PNRRecordPrivateTest, LogOfAGoodSession) {
    start();
    EXPECT_TRUE(session->stop());
    for (const char* line :
         {"[PNRRecordPrivate::start]", "[DEBUG]: PNR session was not in use.\n",
          "[INFO]: Start recording\n",
          "[DEBUG]: Send PNR session control request, req.type= 1req.state= 0\n",
          "[DEBUG]: ACK  header.command= 12 header.status = 0 header.is_response = 1\n",
          "[INSANE]: Reading KELU SMHI message...\n",
          "[INSANE]: Get message, header.command=12size= 4\n",
          "[DEBUG]: PNRRecordPrivate::WorkerThread - STOP_CMD_ISSUED\n",
          "[PNRRecordPrivate::SendStopRecReq]",
          "[DEBUG]: Send PNR session control request, req.typ=1 req.state = 1\n",
          "[DEBUG]: PNR session control request ACK\n\n", "[DEBUG]: record WorkerThread exit\n",
          "[INFO]: record Stopped\n", "[DEBUG]: Exit PNRRecordPrivate::stop\n"}) {
        EXPECT_GE(logCount(line), 1U) << line;
    }
    EXPECT_EQ(logCount("[ERROR]") + logCount("[WARNING]"), 0U);
}

TEST_F(PNRRecordPrivateTest, LeftOverSessionIsClosedFirst) {
    firmwareRecords = true;
    sayToStop = {damagedBuffer(), buffer({record(kLight, 1, {1})}), kAccepted};
    start();
    EXPECT_EQ(logCount("Discard the FW left available buffer due to abnormal app exit!"), 2U);
    EXPECT_EQ(logCount("PNR session was in use and get closed now."), 1U);
    sayToStop = {kAccepted};
    EXPECT_TRUE(session->stop());
    EXPECT_TRUE(receiver.deliveries.empty());
}

TEST_F(PNRRecordPrivateTest, UnexpectedAnswerToTheCleanUpRefusesTheStart) {
    const std::vector<Bytes> endless(2000, buffer({}));
    for (const std::vector<Bytes>& said :
         {std::vector<Bytes>{{}}, {{0x8C, 0, 0}}, {kOther}, {{0x0C, 0, 0, 0}}, endless}) {
        kelu = std::make_shared<FakeKelu>();
        kelu->onWrite = [&](const Bytes&) {
            for (const Bytes& message : said) {
                kelu->say(message);
            }
        };
        logStart = Logger::instance().text().size();
        PNRRecordPrivate refused(kelu, timing);
        EXPECT_FALSE(refused.start(receiver));
        EXPECT_EQ(kelu->written(), std::vector<Bytes>{kStopRequest});
        EXPECT_FALSE(kelu->connected);
        EXPECT_EQ(logCount("[ERROR]: Unexpected response for SMHI_PNR_SESSION_CONTROL_ID command!"),
                  1U);
    }
}

TEST_F(PNRRecordPrivateTest, StartReplies) {
    const struct {
        Bytes reply;
        bool runs;
    } cases[] = {{kAccepted, true}, {kRefused, false},    {{0x0C, 0, 0, 1}, false},
                 {kOther, true},    {buffer({}), true},   {{0x84, 0, 0, 9}, true},
                 {{}, false},       {{0x84, 0, 0}, false}};
    for (const auto& item : cases) {
        logStart = Logger::instance().text().size();
        kelu->onWrite = [&](const Bytes& request) {
            kelu->say(request == kStartRequest ? item.reply : kAccepted);
        };
        session = std::make_unique<PNRRecordPrivate>(kelu, timing);
        EXPECT_EQ(session->start(receiver), item.runs) << testing::PrintToString(item.reply);
        EXPECT_EQ(logCount("[ERROR]: Start recording failed !"), item.runs ? 0U : 1U);
        EXPECT_TRUE(session->stop());
    }
    EXPECT_TRUE(receiver.stages.empty());
}

TEST_F(PNRRecordPrivateTest, BuffersBehindTheStopRequestAreProcessed) {
    sayToStop = {buffer({record(kLight, 1, {1})}), buffer({record(kLight, 2, {2})}), kAccepted};
    start();
    EXPECT_TRUE(session->stop());
    EXPECT_EQ(receiver.deliveries.size(), 2U);
    EXPECT_EQ(logCount("pnr record session stop req has been issued, FW publish the left "
                       "available buffer"),
              2U);
}

TEST_F(PNRRecordPrivateTest, WhatEndsAStopUncleanly) {
    const struct {
        const char* name;
        std::vector<Bytes> said;
        std::size_t notices;
    } cases[] = {{"refused", {buffer({}), kRefused}, 1},
                 {"other message", {kOther}, 0},
                 {"no answer", {{0x0C, 0, 0, 0}}, 0},
                 {"short", {{0x8C}}, 0},
                 {"empty", {{}}, 0}};
    for (const auto& item : cases) {
        receiver.stages.clear();
        sayToStop = item.said;
        start();
        EXPECT_FALSE(session->stop()) << item.name;
        EXPECT_EQ(receiver.stages, std::vector<bool>(item.notices, false)) << item.name;
        EXPECT_FALSE(kelu->connected);
    }
    EXPECT_EQ(logCount("[ERROR]: PNR session control request ACK error, Stop recording failed "
                       "status= 3\n"),
              1U);
    EXPECT_EQ(logCount("[ERROR]: Notify: 2\n"), 1U);
}

TEST_F(PNRRecordPrivateTest, OtherMessagesWhileRecordingAreSkipped) {
    start();
    for (const Bytes& message :
         {Bytes{}, Bytes{15}, kOther, kAccepted, kRefused, Bytes{15, 0, 0, 0}}) {
        kelu->say(message);
    }
    kelu->say(buffer({record(kLight, 1, {1})}));
    kelu->waitUntilBlocked();
    EXPECT_TRUE(session->stop());
    EXPECT_EQ(receiver.deliveries.size(), 1U);
    EXPECT_EQ(logCount("[INFO]: Not a SMHI_PNR_REC_PUBLISH_BUF"), 4U);
}

TEST_F(PNRRecordPrivateTest, DamageIsLoggedOncePerSession) {
    for (int run = 1; run <= 2; ++run) {
        start();
        kelu->say(damagedBuffer());
        kelu->say(damagedBuffer());
        kelu->waitUntilBlocked();
        EXPECT_TRUE(session->stop());
        EXPECT_EQ(receiver.deliveries.size(), 2U * static_cast<unsigned>(run));
        EXPECT_EQ(logCount("[WARNING]"), static_cast<unsigned>(run));
    }
}

TEST_F(PNRRecordPrivateTest, FailureOnTheWorkerEndsTheSession) {
    const auto readFails = [this] { kelu->fail("Failed to read from device"); };
    const auto sampleArrives = [this] { kelu->say(buffer({record(kLight, 1, {1})})); };
    const struct {
        std::function<void()> breakIt, onDelivery, onStageDone;
        const char* line;
    } cases[] = {
        {readFails, [] {}, [] {}, "PNR read from FW failed\n"},
        {readFails, [] {}, [] { throw 1; }, "Notify: 0\n"},
        {sampleArrives, [] { throw std::runtime_error("odd"); }, [] {},
         "PNR session failed: odd\n"},
        {sampleArrives, [] { throw 1; }, [] {}, "PNR session failed\n"},
    };
    for (const auto& item : cases) {
        receiver.stages.clear();
        receiver.onDelivery = item.onDelivery;
        receiver.onStageDone = item.onStageDone;
        firmwareRecords = false;
        logStart = Logger::instance().text().size();
        start();
        item.breakIt();
        waitForLog("Notify: 0", 1);
        EXPECT_FALSE(session->stop()) << item.line;
        EXPECT_EQ(receiver.stages, std::vector<bool>{false}) << item.line;
        EXPECT_EQ(logCount(item.line), 1U) << item.line;
        EXPECT_FALSE(kelu->connected);
    }
}

TEST_F(PNRRecordPrivateTest, PublishingFirmwareIsNotCancelled) {
    timing.stopGrace = hours(1);
    std::future<bool> stopped;
    receiver.onDelivery = [&] {
        stopped = std::async(std::launch::async, [&] { return session->stop(); });
        waitForLog("Stop recording", 1);
    };
    start();
    kelu->say(buffer({record(kLight, 1, {1})}));
    waitForLog("record Stopped", 1);
    EXPECT_TRUE(stopped.get());
    EXPECT_EQ(kelu->cancels, 0);
}

TEST_F(PNRRecordPrivateTest, QuietFirmwareIsStoppedByOneCancelledRead) {
    start();
    kelu->waitUntilBlocked();
    EXPECT_TRUE(session->stop());
    EXPECT_EQ(kelu->cancels, 1);
    EXPECT_TRUE(receiver.stages.empty());
}

TEST_F(PNRRecordPrivateTest, DeadFirmwareDelaysAStopByABoundedTime) {
    timing.acknowledgement = milliseconds(0);
    sayToStop = {};
    start();
    EXPECT_FALSE(session->stop());
    const auto requests = kelu->written().size();
    EXPECT_LE(requests, 3U);
    EXPECT_EQ(receiver.stages, std::vector<bool>{false});
    session.reset();
    EXPECT_EQ(kelu->written().size(), requests) << "a dead firmware isn't asked again";
}

TEST_F(PNRRecordPrivateTest, StopRequestThatCannotBeSent) {
    start();
    kelu->waitUntilBlocked();
    kelu->onWrite = [](const Bytes&) { throw SmhiException("Failed to write to device"); };
    EXPECT_FALSE(session->stop());
    EXPECT_EQ(receiver.stages, std::vector<bool>{false});
    EXPECT_THROW(session->stop(), SmhiException);
    session.reset();
    EXPECT_EQ(logCount("[WARNING]: SMHI Error: Failed to write to device"), 1U);
}

TEST_F(PNRRecordPrivateTest, SecondStopWaitsForTheFirst) {
    sayToStop = {};
    start();
    auto first = std::async(std::launch::async, [this] { return session->stop(); });
    waitForLog("STOP_CMD_ISSUED", 1);
    auto second = std::async(std::launch::async, [this] { return session->stop(); });
    waitForLog("Enter PNRRecordPrivate::stop", 3);
    EXPECT_EQ(second.wait_for(milliseconds(0)), std::future_status::timeout);
    kelu->say(kAccepted);
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    EXPECT_EQ(kelu->written().size(), 3U);
    EXPECT_EQ(logCount("Exit PNRRecordPrivate::stop"), 2U);
}

TEST_F(PNRRecordPrivateTest, RunningSessionIsStoppedByAStartAndByTheDestructor) {
    start();
    start();
    session.reset();
    EXPECT_EQ(kelu->written(), (std::vector<Bytes>{kStopRequest, kStartRequest, kStopRequest,
                                                   kStartRequest, kStopRequest}));
}

TEST_F(PNRRecordPrivateTest, ProcessWideSessionIsMadeAnewAfterItsEnd) {
    int channels = 0;
    PNRRecord processWide(
        [&] {
            ++channels;
            return kelu;
        },
        timing);
    for (int run = 1; run <= 2; ++run) {
        EXPECT_TRUE(processWide.start(receiver));
        EXPECT_TRUE(processWide.stop());
        processWide.endSession();
        processWide.endSession();
        EXPECT_EQ(channels, run);
    }
    EXPECT_TRUE(processWide.stop());
    EXPECT_EQ(channels, 3);
}

TEST_F(PNRRecordPrivateTest, SessionOutlivesTheStopOfAnotherThread) {
    sayToStop = {};
    PNRRecord processWide([this] { return kelu; }, timing);
    EXPECT_TRUE(processWide.start(receiver));
    auto stopped = std::async(std::launch::async, [&] { return processWide.stop(); });
    waitForLog("STOP_CMD_ISSUED", 1);
    processWide.endSession();
    EXPECT_EQ(stopped.wait_for(milliseconds(0)), std::future_status::timeout);
    kelu->say(kAccepted);
    EXPECT_TRUE(stopped.get());
}

}  // namespace
}  // namespace tavocal
