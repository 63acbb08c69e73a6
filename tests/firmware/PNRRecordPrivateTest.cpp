#include "firmware/PNRRecordPrivate.h"

#include <gtest/gtest.h>

#include <future>
#include <map>

#include "base/Text.h"
#include "firmware/FakeKelu.h"
#include "firmware/PNRRecord.h"
#include "firmware/SampleReceiver.h"
#include "log/Logger.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "support/Lines.h"
#include "support/TextTable.h"

namespace tavocal::test {
using std::chrono::milliseconds;
using Messages = std::vector<Bytes>;

const Bytes kStart = {12, 0, 0, 0, 1, 0, 0};
const Bytes kStop = {12, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0};
const Bytes kAccepted = {0x8C, 0, 0, 0};
// One record of a light sensor; and before one that says that it is longer than the buffer.
constexpr const char* kSample = "0f00000015000000154100000000000002010000000000000001000000";
constexpr const char* kDamaged = "0f00000016000000154100000000000002010000000000000001000000c8";

// Knows two sensors and keeps what a session delivers. To be read when the session has stopped.
class FakeReceiver : public SampleReceiver {
  public:
    using Delivery = std::tuple<std::string, std::vector<double>, double>;

    std::optional<Target> findSensor(const std::string& luidText) override {
        const auto found = sensors.find(luidText);
        return found == sensors.end() ? std::nullopt : std::optional<Target>(found->second);
    }
    void handleData(const std::shared_ptr<Sensor>& sensor, std::span<const double> values,
                    double timeMs) override {
        deliveries.push_back({sensor->name, {values.begin(), values.end()}, timeMs});
        onDelivery();
    }
    void stageDone(bool status) override {
        stages.push_back(status);
        onStageDone();
    }

    const std::map<std::string, Target> sensors = {
        {"0041000000000002", {makeSensor({0x0041, 0, 0, 0, 2}), 1000}},
        {"0073000000000002", {makeSensor({0x0073, 0, 0, 0, 2}), 1000000}}};
    std::function<void()> onDelivery = [] {}, onStageDone = [] {};
    std::vector<Delivery> deliveries;
    std::vector<bool> stages;
};

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
            const Messages idle = {{0x8C, 0, 0, 3}};
            for (const Bytes& message : starts ? sayToStart : recording ? sayToStop : idle) {
                kelu->say(message);
            }
            recording = starts;
        };
        receiver.deliveries.clear();
        receiver.stages.clear();
        logStart = Logger::instance().text().size();
        session = std::make_unique<PNRRecordPrivate>(kelu, timing, *patience);
    }
    // The lines of the log since then with that text, each from "[LEVEL]: " on.
    std::string log(const std::string& text) const {
        std::string found;
        for (const std::string& line : linesOf(Logger::instance().text().substr(logStart))) {
            const std::size_t level = line.find("][", line.find("][") + 2) + 1;
            found += contains(line, text) ? line.substr(level) + "; " : "";
        }
        return found;
    }
    std::size_t logCount(const std::string& text) const {
        return static_cast<std::size_t>(std::ranges::count(log(text), ';'));
    }
    // What another thread does on its way shows in the log alone. The pause leaves the log to it.
    void waitForLog(const std::string& text, std::size_t count = 1) const {
        while (logCount(text) < count && !never->waitFor(milliseconds(1))) {
        }
    }

    // The fake firmware is silent between messages, so a stop has no reason for grace. Once the
    // patience ends it is over.
    PnrTiming timing{milliseconds(0), milliseconds(0)};
    static constexpr Patience::Bounds kNone{milliseconds(0), milliseconds(0)};
    std::unique_ptr<Patience> patience = std::make_unique<Patience>(kNone);
    std::shared_ptr<FakeKelu> kelu;
    FakeReceiver receiver;
    Messages sayToStart = {kAccepted}, sayToStop = {kAccepted};
    bool recording = false;
    std::size_t logStart = 0;
    std::unique_ptr<platform::SyncObject> never = platform::makeSyncObject();
    std::unique_ptr<PNRRecordPrivate> session;
};

// The table holds what the log has of it, function by function.
TEST_F(PNRRecordPrivateTest, InterleavedSensorsGetTheirSamplesInOrder) {
    ASSERT_TRUE(session->start(receiver));
    kelu->say(
        bytesOf("0f000000 58000000"
                "1d 7300000000000002 dc05000000000000 c0bdf0ff 20a10700 01000000"
                "15 7600000000000002 4006000000000000 01000000"
                "15 4100000000000002 a406000000000000 39300000"
                "11 7300000000000002 ec2c000000000000"));
    kelu->say(bytesOf("0f000000 15000000 15 4100000000000002 ffffffffffffffff ffffffff"));
    kelu->waitUntilBlocked();
    EXPECT_TRUE(session->stop());
    const std::string light = "AmbientLightSensor";
    const std::vector<FakeReceiver::Delivery> expected = {
        {"Accelerometer", {-1.0, 0.5, 0.000001}, 1.5},
        {light, {12.345}, 1.7},
        {"Accelerometer", {}, 11.5},
        {light, {-0.001}, 18446744073709551615.0 / 1000.0}};
    EXPECT_EQ(receiver.deliveries, expected);
    EXPECT_TRUE(receiver.stages.empty());
    EXPECT_EQ(kelu->cancels, 1) << "a quiet firmware";
    EXPECT_EQ(kelu->written(), (Messages{kStop, kStart, kStop}));
    EXPECT_FALSE(kelu->connected);
    for (const auto& [function, lines] : tableOfTest()) {
        EXPECT_EQ(log("[PNRRecordPrivate::" + function + "]"), lines);
    }
}

// What the firmware says to a stop of a session that was left, to a start, or to a stop; how that
// ends, and what the log warns of.
TEST_F(PNRRecordPrivateTest, WhatTheFirmwareAnswers) {
    const TextTable meanings = {{"SAMPLE", kSample}, {"DAMAGED", kDamaged}, {"EMPTY", " "}};
    for (const auto& [given, expected] : tableOfTest(meanings)) {
        Messages said;
        const std::string words = given.substr(given.find(' ') + 1);
        for (const std::string& word : linesOf(replaceAll(words, " ", "\n"))) {
            said.push_back(bytesOf(word));
        }
        sayToStart = given.starts_with("start") ? said : Messages{kAccepted};
        sayToStop = given.starts_with("left") ? said : Messages{kAccepted};
        renew();
        recording = given.starts_with("left");
        std::string outcome = "refused; ";
        if (session->start(receiver)) {
            sayToStop = given.starts_with("stop") ? said : Messages{kAccepted};
            outcome = session->stop() ? "runs, stopped; " : "runs, not stopped; ";
        }
        outcome += std::to_string(receiver.deliveries.size()) + " samples; " + log("[ERROR]") +
                   log("[WARNING]") + log("Discard") + log("get closed") + log("pnr record");
        EXPECT_EQ(outcome, expected + "; ") << given;
        EXPECT_EQ(receiver.stages, std::vector<bool>(logCount("Notify"), false));
    }
}

TEST_F(PNRRecordPrivateTest, OddMessagesWhileRecordingAreSkippedAndDamageIsLoggedOnce) {
    const std::string skipped =
        "[INFO]: Not a SMHI_PNR_REC_PUBLISH_BUF or SMHI_PNR_SESSION_CONTROL_ID message !";
    for (std::size_t run = 1; run <= 2; ++run) {
        ASSERT_TRUE(session->start(receiver)) << "which stops the session before";
        for (const char* message :
             {"", "0f", "84000000", "8c000000", "8c000003", kDamaged, "0f000000", kDamaged}) {
            kelu->say(bytesOf(message));
        }
        kelu->waitUntilBlocked();
        EXPECT_EQ(receiver.deliveries.size(), 2 * run);
        EXPECT_EQ(logCount(skipped), 4 * run);
        EXPECT_EQ(logCount("[WARNING]: Dropped the rest of a buffer with a damaged record"), run);
    }
    session.reset();
    EXPECT_EQ(kelu->written(), (Messages{kStop, kStart, kStop, kStart, kStop}));
}

TEST_F(PNRRecordPrivateTest, FailureOnTheWorkerEndsTheSession) {
    using Callback = std::function<void()>;
    const Callback odd = [] { throw std::runtime_error("odd"); }, strange = [] { throw 1; };
    const std::tuple<bool, Callback, Callback, std::string> cases[] = {
        {true, odd, strange, "read from FW failed"},
        {false, odd, [] {}, "session failed: odd"},
        {false, strange, strange, "session failed"}};
    for (const auto& [readFails, onDelivery, onStageDone, text] : cases) {
        renew();
        recording = false;
        receiver.onDelivery = onDelivery;
        receiver.onStageDone = onStageDone;
        ASSERT_TRUE(session->start(receiver));
        readFails ? kelu->fail("Failed to read from device") : kelu->say(bytesOf(kSample));
        waitForLog("Notify");
        EXPECT_FALSE(session->stop());
        EXPECT_EQ(receiver.stages, std::vector<bool>{false});
        EXPECT_EQ(log("[ERROR]"), "[ERROR]: PNR " + text + "; [ERROR]: Notify: 0; ");
        EXPECT_FALSE(kelu->connected);
    }
}

TEST_F(PNRRecordPrivateTest, PublishingFirmwareIsNotCancelled) {
    timing.stopGrace = std::chrono::hours(1);
    renew();
    std::future<bool> stopped;
    receiver.onDelivery = [&] {
        stopped = std::async(std::launch::async, [&] { return session->stop(); });
        waitForLog("Stop recording");
    };
    ASSERT_TRUE(session->start(receiver));
    kelu->say(bytesOf(kSample));
    waitForLog("record Stopped");
    EXPECT_TRUE(stopped.get());
    EXPECT_EQ(kelu->cancels, 0);
}

TEST_F(PNRRecordPrivateTest, StopWaitsForItsAnswerHoweverMuchIsPublishedBefore) {
    sayToStop = {};
    ASSERT_TRUE(session->start(receiver));
    auto stopped = std::async(std::launch::async, [&] { return session->stop(); });
    waitForLog("STOP_CMD_ISSUED");
    for (std::size_t round = 1; round <= 3; ++round) {
        kelu->waitUntilBlocked();
        kelu->say(bytesOf(kSample));
        waitForLog("pnr record session stop req has been issued", round);
    }
    EXPECT_EQ(stopped.wait_for(milliseconds(0)), std::future_status::timeout);
    kelu->say(kAccepted);
    EXPECT_TRUE(stopped.get());
    EXPECT_EQ(receiver.deliveries.size(), 3U);
    EXPECT_TRUE(receiver.stages.empty());
}

// Until the channel's time-out; or if it publishes for ever and the patience has ended before the
// stop, or meanwhile.
TEST_F(PNRRecordPrivateTest, FirmwareThatLeavesTheStopUnansweredIsNotAskedAgain) {
    const PnrTiming usual;
    EXPECT_EQ(usual.afterRefusal, milliseconds(10));
    EXPECT_EQ(usual.stopGrace, milliseconds(500));
    for (const std::string end : {"time-out", "patience before", "patience meanwhile"}) {
        session.reset();
        patience = std::make_unique<Patience>(kNone);
        renew();
        recording = false;
        sayToStop = {bytesOf(kSample)};
        ASSERT_TRUE(session->start(receiver));
        if (end == "patience before") {
            patience->end();
        }
        auto stopped = std::async(std::launch::async, [&] { return session->stop(); });
        waitForLog("pnr record session stop req has been issued");
        if (end == "patience meanwhile") {
            patience->end();
        }
        end == "time-out" ? kelu->timeOut() : kelu->say(bytesOf(kSample));
        EXPECT_FALSE(stopped.get());
        EXPECT_EQ(receiver.stages, std::vector<bool>{false});
        session.reset();
        EXPECT_EQ(kelu->written().size(), 3U) << end;
    }
}

TEST_F(PNRRecordPrivateTest, AllLeftOversAreDiscardedUntilThePatienceEnds) {
    const std::size_t many = 1200;
    for (const bool interrupted : {false, true}) {
        renew();
        for (std::size_t i = 1; i <= many; ++i) {
            kelu->next([&, i] {
                if (interrupted && i == many / 2) {
                    patience->end();
                }
                return bytesOf(kSample);
            });
        }
        EXPECT_EQ(session->start(receiver), !interrupted);
        EXPECT_EQ(logCount("Discard"), interrupted ? many / 2 - 1 : many);
        EXPECT_TRUE(receiver.deliveries.empty());
    }
}

TEST_F(PNRRecordPrivateTest, StopRequestThatCannotBeSent) {
    ASSERT_TRUE(session->start(receiver));
    kelu->waitUntilBlocked();
    kelu->onWrite = [](const Bytes&) { throw SmhiException("Failed"); };
    EXPECT_FALSE(session->stop());
    EXPECT_EQ(receiver.stages, std::vector<bool>{false});
    EXPECT_THROW(session->stop(), SmhiException);
    session.reset();
    EXPECT_EQ(log("[WARNING]"), "[WARNING]: SMHI Error: Failed; ");
}

TEST_F(PNRRecordPrivateTest, ProcessWideSessionIsMadeAnewAndOutlivesTwoStops) {
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
    const auto stop = [&] { return processWide.stop(); };
    const std::size_t entered = logCount("Enter PNRRecordPrivate::stop");
    auto first = std::async(std::launch::async, stop);
    waitForLog("STOP_CMD_ISSUED", 3);
    // The second one waits for the first.
    auto second = std::async(std::launch::async, stop);
    waitForLog("Enter PNRRecordPrivate::stop", entered + 2);
    processWide.endSession();
    EXPECT_EQ(first.wait_for(milliseconds(0)), std::future_status::timeout);
    EXPECT_EQ(second.wait_for(milliseconds(0)), std::future_status::timeout);
    kelu->say(kAccepted);
    EXPECT_TRUE(first.get() && second.get());
    EXPECT_EQ(channels, 3);
    EXPECT_EQ(kelu->written().size(), 12U) << "start, stop, and one stop each before and after";
}

}  // namespace tavocal::test
