#include "firmware/PNRRecordPrivate.h"

#include <gtest/gtest.h>

#include <future>

#include "base/Logger.h"
#include "base/Text.h"
#include "firmware/FakeKelu.h"
#include "firmware/FakeReceiver.h"
#include "firmware/PNRRecord.h"
#include "sensors/Luid.h"

namespace tavocal::test {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using Messages = std::vector<Bytes>;
using Lines = std::vector<std::string>;

const Bytes kStart = {12, 0, 0, 0, 1, 0, 0};
const Bytes kStop = {12, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
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

Bytes buffer(const Messages& records) {
    ByteWriter body;
    for (const Bytes& bytes : records) {
        body.append(bytes);
    }
    const auto size = static_cast<std::uint32_t>(body.size());
    return ByteWriter().u32(15).u32(size).append(body.take()).take();
}

const Bytes kSample = buffer({record(kLight, 1, {1})});
// Its second record says that it is longer than the buffer.
const Bytes kDamaged = buffer({record(kLight, 1, {5}), Bytes(1, 200)});

class PNRRecordPrivateTest : public testing::Test {
  protected:
    PNRRecordPrivateTest() { renew(); }

    // A healthy firmware. A test changes what it says to a start, and to a stop while it records.
    void renew() {
        session.reset();
        kelu = std::make_shared<FakeKelu>();
        kelu->patient = true;
        kelu->onWrite = [this](const Bytes& request) {
            const bool starts = request == kStart;
            const Messages idle = {kRefused};
            for (const Bytes& message : starts ? sayToStart : recording ? sayToStop : idle) {
                kelu->say(message);
            }
            recording = starts;
        };
        receiver.deliveries.clear();
        receiver.stages.clear();
        logStart = Logger::instance().text().size();
        session = std::make_unique<PNRRecordPrivate>(kelu, timing);
    }
    // The lines of one function since then, "level: message".
    Lines log(const std::string& function) const {
        const std::string text = Logger::instance().text().substr(logStart);
        const std::string head = "[PNRRecordPrivate::" + function + "][";
        Lines lines;
        for (std::size_t at = 0; (at = text.find(head, at)) != std::string::npos;) {
            at = text.find("][", at + head.size()) + 2;
            const std::string line = text.substr(at, text.find('\n', at) - at);
            lines.push_back(line);
        }
        return lines;
    }
    std::size_t logCount(const std::string& text) const {
        std::size_t count = 0;
        for (const char* function : {"start", "stop", "WorkerThread", "notify"}) {
            for (const std::string& line : log(function)) {
                count += contains(line, text) ? 1U : 0U;
            }
        }
        return count;
    }
    // What another thread does on its way shows in the log alone. The pause leaves the log to it.
    void waitForLog(const std::string& text, std::size_t count = 1) const {
        while (logCount(text) < count && !never->waitFor(milliseconds(1))) {
        }
    }

    // The fake firmware is silent between messages, so a stop has no reason for grace.
    PnrTiming timing{milliseconds(0), milliseconds(0), hours(1)};
    std::shared_ptr<FakeKelu> kelu;
    FakeReceiver receiver;
    std::shared_ptr<Sensor> light = receiver.know(luidText(kLight), 1000);
    std::shared_ptr<Sensor> accelerometer = receiver.know(luidText(kAccelerometer), 1000000);
    Messages sayToStart = {kAccepted};
    Messages sayToStop = {kAccepted};
    bool recording = false;
    std::size_t logStart = 0;
    std::unique_ptr<platform::SyncObject> never = platform::makeSyncObject();
    std::unique_ptr<PNRRecordPrivate> session;
};

const Lines kCleanUp = {"DEBUG]: Enter PNRRecordPrivate::stop",
                        "DEBUG]: Send PNR session control request, req.typ=1 req.state = 1",
                        "DEBUG]: ACK  header.command= 12 header.status = 3 header.is_response = 1",
                        "DEBUG]: PNR session was not in use.",
                        "DEBUG]: Exit PNRRecordPrivate::stop"};
const std::string kReading = "INSANE]: Reading KELU SMHI message...";

TEST_F(PNRRecordPrivateTest, InterleavedSensorsGetTheirSamplesInOrder) {
    ASSERT_TRUE(session->start(receiver));
    EXPECT_EQ(kelu->written(), (Messages{kStop, kStart}));
    kelu->say(buffer({record(kAccelerometer, 1500, {-1000000, 500000, 1}),
                      record(kStranger, 1600, {1, 2, 3}), record(kLight, 1700, {12345}),
                      record(kAccelerometer, 11500, {})}));
    kelu->say(buffer({record(kLight, 0xFFFFFFFFFFFFFFFF, {-1})}));
    kelu->waitUntilBlocked();
    EXPECT_TRUE(session->stop());
    EXPECT_EQ(receiver.deliveries, (std::vector<FakeReceiver::Delivery>{
                                       {accelerometer, {-1.0, 0.5, 0.000001}, 1.5},
                                       {light, {12.345}, 1.7},
                                       {accelerometer, {}, 11.5},
                                       {light, {-0.001}, 18446744073709551615.0 / 1000.0}}));
    EXPECT_TRUE(receiver.stages.empty());
    EXPECT_EQ(kelu->cancels, 1) << "a quiet firmware";
    EXPECT_EQ(kelu->written(), (Messages{kStop, kStart, kStop}));
    EXPECT_FALSE(kelu->connected);

    Lines stop = kCleanUp;
    stop.insert(stop.end(), {"DEBUG]: Enter PNRRecordPrivate::stop", "INFO]: Stop recording",
                             "INFO]: record Stopped", "DEBUG]: Exit PNRRecordPrivate::stop"});
    EXPECT_EQ(log("stop"), stop);
    EXPECT_EQ(log("start"),
              (Lines{"INFO]: Start recording",
                     "DEBUG]: Send PNR session control request, req.type= 1req.state= 0",
                     "DEBUG]: ACK  header.command= 12 header.status = 0 header.is_response = 1"}));
    EXPECT_EQ(
        log("WorkerThread"),
        (Lines{kReading, "INSANE]: Get message, header.command=15size= 104", kReading,
               "INSANE]: Get message, header.command=15size= 29", kReading,
               "DEBUG]: PNRRecordPrivate::WorkerThread - STOP_CMD_ISSUED", kReading,
               "INSANE]: Get message, header.command=12size= 4",
               "DEBUG]: PNR session control request ACK", "DEBUG]: record WorkerThread exit"}));
    EXPECT_EQ(log("SendStopRecReq"),
              Lines{"DEBUG]: Send PNR session control request, req.typ=1 req.state = 1"});
}

TEST_F(PNRRecordPrivateTest, LeftOverSessionIsClosedFirst) {
    recording = true;
    sayToStop = {kDamaged, kSample, kAccepted};
    ASSERT_TRUE(session->start(receiver));
    EXPECT_EQ(logCount("DEBUG]: Discard the FW left available buffer due to abnormal app exit!"),
              2U);
    EXPECT_EQ(logCount("DEBUG]: PNR session was in use and get closed now."), 1U);
    EXPECT_TRUE(receiver.deliveries.empty());
    // Buffers behind the stop request are processed.
    EXPECT_TRUE(session->stop());
    EXPECT_EQ(receiver.deliveries.size(), 2U);
    EXPECT_EQ(logCount("DEBUG]: pnr record session stop req has been issued, FW publish the left "
                       "available buffer"),
              2U);
}

TEST_F(PNRRecordPrivateTest, UnexpectedAnswerToTheCleanUpRefusesTheStart) {
    for (const Bytes& answer : {Bytes{}, Bytes{0x8C, 0, 0}, kOther, Bytes{0x0C, 0, 0, 0}}) {
        renew();
        recording = true;
        sayToStop = {answer};
        EXPECT_FALSE(session->start(receiver));
        EXPECT_EQ(kelu->written(), Messages{kStop});
        EXPECT_FALSE(kelu->connected);
        EXPECT_EQ(logCount("ERROR]: Unexpected response for SMHI_PNR_SESSION_CONTROL_ID command!"),
                  1U);
    }
}

TEST_F(PNRRecordPrivateTest, StartReplies) {
    const struct {
        Bytes reply;
        bool runs, refused;
    } cases[] = {{kAccepted, true, false},       {kRefused, false, true},
                 {{0x0C, 0, 0, 3}, false, true}, {kOther, true, false},
                 {kSample, true, false},         {{0x84, 0, 0, 9}, true, false},
                 {{0x84, 0, 0}, false, false},   {{}, false, false}};
    for (const auto& [reply, runs, refused] : cases) {
        SCOPED_TRACE(hexText(reply.data(), reply.size()));
        renew();
        sayToStart = {reply};
        EXPECT_EQ(session->start(receiver), runs);
        EXPECT_EQ(logCount("ERROR]: PNR session control request ACK error, status=3"), refused);
        EXPECT_EQ(logCount("ERROR]: Start recording failed !"), !runs);
        EXPECT_TRUE(session->stop());
        EXPECT_TRUE(receiver.stages.empty());
    }
}

TEST_F(PNRRecordPrivateTest, WhatEndsAStopUncleanly) {
    const struct {
        Messages said;
        Lines notices;
    } cases[] = {{{kSample, kRefused}, {"ERROR]: Notify: 2"}},
                 {{kOther}, {}},
                 {{{0x0C, 0, 0, 0}}, {}},
                 {{{0x8C}}, {}},
                 {{{}}, {}}};
    for (const auto& [said, notices] : cases) {
        renew();
        sayToStop = said;
        ASSERT_TRUE(session->start(receiver));
        EXPECT_FALSE(session->stop());
        EXPECT_EQ(receiver.stages, std::vector<bool>(notices.size(), false));
        EXPECT_EQ(log("notify"), notices);
        EXPECT_EQ(logCount("ERROR]: PNR session control request ACK error, Stop recording failed "
                           "status= 3"),
                  notices.size());
        EXPECT_FALSE(kelu->connected);
    }
}

TEST_F(PNRRecordPrivateTest, OddMessagesWhileRecordingAreSkippedAndDamageIsLoggedOnce) {
    for (std::size_t run = 1; run <= 2; ++run) {
        ASSERT_TRUE(session->start(receiver));
        for (const Bytes& message : {Bytes{}, Bytes{15}, kOther, kAccepted, kRefused, kDamaged,
                                     Bytes{15, 0, 0, 0}, kDamaged}) {
            kelu->say(message);
        }
        kelu->waitUntilBlocked();
        EXPECT_TRUE(session->stop());
        EXPECT_EQ(receiver.deliveries.size(), 2 * run);
        EXPECT_EQ(logCount("INFO]: Not a SMHI_PNR_REC_PUBLISH_BUF or "
                           "SMHI_PNR_SESSION_CONTROL_ID message !"),
                  4 * run);
        EXPECT_EQ(logCount("WARNING]: Dropped the rest of a buffer with a damaged record"), run);
    }
}

TEST_F(PNRRecordPrivateTest, FailureOnTheWorkerEndsTheSession) {
    const auto readFails = [this] { kelu->fail("Failed to read from device"); };
    const auto sampleArrives = [this] { kelu->say(kSample); };
    const struct {
        std::function<void()> breakIt, onDelivery, onStageDone;
        std::string line;
    } cases[] = {
        {readFails, [] {}, [] {}, "ERROR]: PNR read from FW failed"},
        {readFails, [] {}, [] { throw 1; }, "ERROR]: PNR read from FW failed"},
        {sampleArrives, [] { throw std::runtime_error("odd"); }, [] {},
         "ERROR]: PNR session failed: odd"},
        {sampleArrives, [] { throw 1; }, [] {}, "ERROR]: PNR session failed"},
    };
    for (const auto& item : cases) {
        renew();
        receiver.onDelivery = item.onDelivery;
        receiver.onStageDone = item.onStageDone;
        ASSERT_TRUE(session->start(receiver));
        item.breakIt();
        waitForLog("ERROR]: Notify: 0");
        EXPECT_FALSE(session->stop()) << item.line;
        EXPECT_EQ(receiver.stages, std::vector<bool>{false}) << item.line;
        EXPECT_EQ(logCount(item.line), 1U) << item.line;
        EXPECT_FALSE(kelu->connected);
        recording = false;
    }
}

TEST_F(PNRRecordPrivateTest, PublishingFirmwareIsNotCancelled) {
    timing.stopGrace = hours(1);
    renew();
    std::future<bool> stopped;
    receiver.onDelivery = [&] {
        stopped = std::async(std::launch::async, [&] { return session->stop(); });
        waitForLog("Stop recording");
    };
    ASSERT_TRUE(session->start(receiver));
    kelu->say(kSample);
    waitForLog("record Stopped");
    EXPECT_TRUE(stopped.get());
    EXPECT_EQ(kelu->cancels, 0);
}

TEST_F(PNRRecordPrivateTest, SilentFirmwareIsGivenUpAndNotAskedAgain) {
    timing.acknowledgement = milliseconds(0);
    renew();
    sayToStop = {};
    ASSERT_TRUE(session->start(receiver));
    EXPECT_FALSE(session->stop());
    EXPECT_EQ(receiver.stages, std::vector<bool>{false});
    const auto requests = kelu->written().size();
    EXPECT_LE(requests, 3U);
    session.reset();
    EXPECT_EQ(kelu->written().size(), requests);
}

TEST_F(PNRRecordPrivateTest, StopRequestThatCannotBeSent) {
    ASSERT_TRUE(session->start(receiver));
    kelu->waitUntilBlocked();
    kelu->onWrite = [](const Bytes&) { throw SmhiException("Failed to write to device"); };
    EXPECT_FALSE(session->stop());
    EXPECT_EQ(receiver.stages, std::vector<bool>{false});
    EXPECT_THROW(session->stop(), SmhiException);
    session.reset();
    EXPECT_EQ(logCount("WARNING]: SMHI Error: Failed to write to device"), 1U);
}

TEST_F(PNRRecordPrivateTest, SecondStopWaitsForTheFirst) {
    sayToStop = {};
    ASSERT_TRUE(session->start(receiver));
    auto first = std::async(std::launch::async, [this] { return session->stop(); });
    waitForLog("STOP_CMD_ISSUED");
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
    ASSERT_TRUE(session->start(receiver));
    ASSERT_TRUE(session->start(receiver));
    session.reset();
    EXPECT_EQ(kelu->written(), (Messages{kStop, kStart, kStop, kStart, kStop}));
}

TEST_F(PNRRecordPrivateTest, ProcessWideSessionIsMadeAnewAndOutlivesAStop) {
    int channels = 0;
    PNRRecord processWide([&] { return ++channels, kelu; }, timing);
    for (int run = 1; run <= 2; ++run) {
        EXPECT_TRUE(processWide.start(receiver));
        EXPECT_TRUE(processWide.stop());
        processWide.endSession();
        processWide.endSession();
        EXPECT_EQ(channels, run);
    }
    sayToStop = {};
    EXPECT_TRUE(processWide.start(receiver));
    auto stopped = std::async(std::launch::async, [&] { return processWide.stop(); });
    waitForLog("STOP_CMD_ISSUED", 3);
    processWide.endSession();
    EXPECT_EQ(stopped.wait_for(milliseconds(0)), std::future_status::timeout);
    kelu->say(kAccepted);
    EXPECT_TRUE(stopped.get());
    EXPECT_EQ(channels, 3);
}

}  // namespace
}  // namespace tavocal::test
