#include "firmware/SDT.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "FakeKelu.h"

namespace tavocal {
namespace {

constexpr LUID kGyroscope = {0x0076, 0x1234, 0xABCD, 1, kStaticFlag};
// The same on the wire.
const Bytes kGyroscopeBytes = {0x76, 0x00, 0x34, 0x12, 0xCD, 0xAB, 0x01, 0x02};

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// An answer of that size, filled with what means nothing.
Bytes answer(std::uint8_t command, std::uint8_t status, std::size_t size = 4) {
    Bytes bytes(std::max<std::size_t>(size, 4), 0xCC);
    bytes[0] = static_cast<std::uint8_t>(command | 0x80);
    bytes[3] = status;
    return bytes;
}

Bytes with(Bytes bytes, std::size_t offset, const Bytes& part) {
    std::copy(part.begin(), part.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return bytes;
}

std::string smhiFailure(const std::function<void()>& action) {
    try {
        action();
    } catch (const SmhiException& failure) {
        return failure.what();
    }
    return "none";
}

class SDTTest : public testing::Test {
  protected:
    void expectOnlyRequest(const Bytes& request) {
        EXPECT_EQ(kelu->written(), std::vector<Bytes>{request});
        EXPECT_EQ(kelu->connects, 1);
        EXPECT_FALSE(kelu->connected);
    }

    std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    SDT sdt{[this] { return kelu; }};
};

TEST_F(SDTTest, Reset) {
    kelu->say(answer(2, 0));
    sdt.resetTavo();
    expectOnlyRequest({2, 0, 0, 0});
}

TEST_F(SDTTest, CalibrationBlockIsRead) {
    const Bytes block = {9, 8, 7};
    kelu->say(with(answer(4, 0, 30), 22, Bytes{3, 0} + block));
    EXPECT_EQ(sdt.getCalibrationData(kGyroscope), block);
    expectOnlyRequest(Bytes{4, 0, 0, 0} + kGyroscopeBytes + Bytes{0, 0});
}

TEST_F(SDTTest, EmptyCalibrationBlockIsRead) {
    kelu->say(with(answer(4, 0, 24), 22, {0, 0}));
    EXPECT_TRUE(sdt.getCalibrationData(kGyroscope).empty());
}

TEST_F(SDTTest, CalibrationBlockIsWritten) {
    kelu->say(answer(5, 0));
    Bytes block(0x0102, 0x5A);
    sdt.setCalibrationData(kGyroscope, block);
    expectOnlyRequest(Bytes{5, 0, 0, 0} + kGyroscopeBytes + Bytes{0, 0, 0, 0, 0x12, 0x01, 0, 0} +
                      kGyroscopeBytes + Bytes{0x06, 0x01, 0x00, 0x01, 0x02, 0x00, 0x02, 0x01} +
                      block);
}

TEST_F(SDTTest, EmptyBlockSendsNothingAndAnEndlessOneFails) {
    sdt.setCalibrationData(kGyroscope, {});
    EXPECT_EQ(smhiFailure([this] { sdt.setCalibrationData(kGyroscope, Bytes(65532)); }),
              "SMHI Error: Set calibration data command failed due to invalid parameter");
    EXPECT_EQ(kelu->connects, 0);
    kelu->say(answer(5, 0));
    sdt.setCalibrationData(kGyroscope, Bytes(65531));
    EXPECT_EQ(kelu->written().at(0).size(), 65567U);
}

TEST_F(SDTTest, SensorListIsWalkedGroupByGroup) {
    const Bytes skipped(11, 0xCC);
    const Bytes other = {0x73, 0x00, 0, 0, 0, 0, 0, 1};
    const Bytes header = {0x84, 0, 0, 0, 0xCC, 0xCC, 0xCC, 0xCC, 3, 0xCC};
    kelu->say(header + skipped + Bytes{2} + kGyroscopeBytes + other + skipped + Bytes{0} + skipped +
              Bytes{1} + other + Bytes{0xCC});
    const LUID accelerometer = {0x0073, 0, 0, 0, kDynamicFlag};
    EXPECT_EQ(sdt.enumerateSensors(),
              (std::vector<LUID>{kGyroscope, accelerometer, accelerometer}));
    expectOnlyRequest(Bytes{4, 0, 0, 0} + Bytes(8, 0) + Bytes{0x00, 0x02});
}

TEST_F(SDTTest, EmptySensorList) {
    kelu->say(with(answer(4, 0, 9), 8, {0}));
    EXPECT_TRUE(sdt.enumerateSensors().empty());
}

TEST_F(SDTTest, DeviceSettings) {
    const Bytes pdtRequest = Bytes{4, 0, 0, 0} + Bytes(8, 0) + Bytes{0x00, 0x04};
    const Bytes pdt = with(with(answer(4, 0, 14), 9, {3}), 13, {2});
    kelu->say(pdt);
    EXPECT_EQ(sdt.getFormFactor(), 3);
    expectOnlyRequest(pdtRequest);
    kelu->say(pdt);
    EXPECT_EQ(sdt.getHinge(), 2);
    EXPECT_EQ(kelu->written(), (std::vector<Bytes>{pdtRequest, pdtRequest}));
}

TEST_F(SDTTest, MinimumReportIntervalIsRoundedDown) {
    kelu->say(with(answer(9, 0, 12), 8, {0xCF, 0x07, 0, 0}));  // 1999 microseconds
    EXPECT_EQ(sdt.getMinReportInterval(kGyroscope), 1U);
    expectOnlyRequest(Bytes{9, 0, 0, 0} + kGyroscopeBytes + Bytes{0x04, 0x03});
}

const std::vector<SampledSensor> kTwoSensors = {{{0x0073, 0, 0, 0, 2}, "Accelerometer"},
                                                {kGyroscope, "Gyroscope_2"}};

TEST_F(SDTTest, SamplingStartsSensorBySensor) {
    for (int i = 0; i < 6; ++i) {
        kelu->say(answer(10, 0));
    }
    sdt.startSampling(kTwoSensors, 10, 2.9);
    const Bytes head = Bytes{10, 0, 0, 0} + kGyroscopeBytes;
    const auto written = kelu->written();
    ASSERT_EQ(written.size(), 6U);
    EXPECT_EQ(written[0],
              (Bytes{10, 0, 0, 0, 0x73, 0, 0, 0, 0, 0, 0, 2, 0x0E, 3, 4, 0, 0x10, 0x27, 0, 0}));
    EXPECT_EQ(written[3], head + (Bytes{0x0E, 0x03, 4, 0, 0x10, 0x27, 0, 0}));
    EXPECT_EQ(written[4], head + (Bytes{0x16, 0x03, 1, 0, 2}));
    EXPECT_EQ(written[5], head + (Bytes{0x0F, 0x03, 4, 0, 2, 0, 0, 0}));
    EXPECT_EQ(kelu->connects, 1);
    EXPECT_FALSE(kelu->connected);
}

TEST_F(SDTTest, NumbersBeyondTheWireBecomeTheNearest) {
    const Bytes largest = {0xFF, 0xFF, 0xFF, 0xFF};
    const struct {
        std::uint32_t interval;
        double sensitivity;
        Bytes intervalBytes, sensitivityBytes;
    } cases[] = {
        {4294967, -1.0, {0xD8, 0xFE, 0xFF, 0xFF}, Bytes(4, 0)},
        {4294968, std::nan(""), largest, Bytes(4, 0)},
        {std::numeric_limits<std::uint32_t>::max(), 1e30, largest, largest},
    };
    for (const auto& item : cases) {
        kelu = std::make_shared<FakeKelu>();
        sdt = SDT([this] { return kelu; });
        kelu->onWrite = [this](const Bytes&) { kelu->say(answer(10, 0)); };
        sdt.startSampling({{kGyroscope, ""}}, item.interval, item.sensitivity);
        const auto written = kelu->written();
        ASSERT_EQ(written.size(), 3U);
        EXPECT_EQ(Bytes(written[0].end() - 4, written[0].end()), item.intervalBytes);
        EXPECT_EQ(Bytes(written[2].end() - 4, written[2].end()), item.sensitivityBytes);
    }
}

TEST_F(SDTTest, SamplingStops) {
    kelu->say(answer(10, 0));
    kelu->say(answer(10, 0));
    sdt.stopSampling(kTwoSensors);
    const auto written = kelu->written();
    ASSERT_EQ(written.size(), 2U);
    EXPECT_EQ(written[1], Bytes({10, 0, 0, 0}) + kGyroscopeBytes + Bytes({0x16, 0x03, 1, 0, 1}));
    EXPECT_FALSE(kelu->connected);
}

TEST_F(SDTTest, SamplingFailureNamesTheSensor) {
    for (const bool transportFails : {false, true}) {
        kelu = std::make_shared<FakeKelu>();
        sdt = SDT([this] { return kelu; });
        for (int i = 0; i < 4; ++i) {
            kelu->say(answer(10, 0));
        }
        if (!transportFails) {
            kelu->say(answer(10, 1));
        }
        try {
            sdt.startSampling(kTwoSensors, 10, 0.0);
            ADD_FAILURE();
        } catch (const CalibrationException& failure) {
            EXPECT_STREQ(failure.what(), "Failed to sample sensor Gyroscope_2");
        }
        EXPECT_EQ(kelu->written().size(), 5U);
        EXPECT_EQ(kelu->connected, transportFails);
    }
}

TEST_F(SDTTest, ChannelFailurePassesThrough) {
    kelu->fail("Failed to read from device");
    EXPECT_EQ(smhiFailure([this] { sdt.resetTavo(); }), "SMHI Error: Failed to read from device");
    EXPECT_TRUE(kelu->connected);
    kelu->connectFailure = "Failed to enumerate device interfaces";
    EXPECT_EQ(smhiFailure([this] { sdt.startSampling(kTwoSensors, 10, 0.0); }),
              "SMHI Error: Failed to enumerate device interfaces");
}

// Every command: a good answer, and the failure's text for a status and for a damaged answer.
struct CommandCase {
    const char* name;
    std::function<void(SDT&)> run;
    Bytes good;
    std::size_t needed;  // shortest length of the good answer that is enough
    std::string failure, failureStatus5;
};

std::vector<CommandCase> commandCases() {
    const std::string pdt = "SMHI Error: Set PDT command  failed, status: ";
    const std::string set = "SMHI Error: Set calibration data command failed";
    const std::string get = "SMHI Error: Get calibration data command failed";
    const std::string list = "SMHI Error: Enumerate sensors command failed";
    const std::string sampling = "SMHI Error: Set sampling configuration data command failed";
    const std::string reset = "SMHI Error: Reset Tavo command failed";
    const Bytes listAnswer = with(with(with(answer(4, 0, 50), 8, {2}), 21, {1}), 10 + 20 + 11, {1});
    return {
        {"reset", [](SDT& s) { s.resetTavo(); }, answer(2, 0), 4, reset, reset},
        {"get", [](SDT& s) { s.getCalibrationData(kGyroscope); },
         with(answer(4, 0, 40), 22, {10, 0}), 34, get, get},
        {"set", [](SDT& s) { s.setCalibrationData(kGyroscope, {1}); }, answer(5, 0), 4, set,
         set + " due to invalid parameter"},
        {"list", [](SDT& s) { s.enumerateSensors(); }, listAnswer, 50, list, list},
        {"formFactor", [](SDT& s) { s.getFormFactor(); }, answer(4, 0, 14), 10, pdt + "0",
         pdt + "5"},
        {"hinge", [](SDT& s) { s.getHinge(); }, answer(4, 0, 14), 14, pdt + "0", pdt + "5"},
        {"interval", [](SDT& s) { s.getMinReportInterval(kGyroscope); }, answer(9, 0, 12), 12,
         pdt + "0", pdt + "5"},
        {"stop",
         [](SDT& s) {
             s.stopSampling({{kGyroscope, ""}});
         },
         answer(10, 0), 4, sampling, sampling},
    };
}

std::string outcome(const CommandCase& command, const Bytes& message) {
    const auto kelu = std::make_shared<FakeKelu>();
    SDT sdt([kelu] { return kelu; });
    kelu->say(message);
    const std::string failure = smhiFailure([&] { command.run(sdt); });
    EXPECT_FALSE(kelu->connected);
    EXPECT_EQ(kelu->closes, 1);
    return failure;
}

TEST(SDTAnswerTest, CutAtEveryLength) {
    for (const CommandCase& command : commandCases()) {
        SCOPED_TRACE(command.name);
        for (std::size_t size = 0; size <= command.good.size(); ++size) {
            const Bytes cut(command.good.begin(),
                            command.good.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_EQ(outcome(command, cut), size < command.needed ? command.failure : "none")
                << size;
        }
    }
}

TEST(SDTAnswerTest, RefusedOrNotTheAnswer) {
    for (const CommandCase& command : commandCases()) {
        SCOPED_TRACE(command.name);
        Bytes changed = with(command.good, 3, {5});
        EXPECT_EQ(outcome(command, changed), command.failureStatus5);
        changed = with(command.good, 0, {static_cast<std::uint8_t>(command.good[0] & 0x7F)});
        EXPECT_EQ(outcome(command, changed), command.failure) << "no response";
        changed = with(command.good, 0, {0x8F});
        EXPECT_EQ(outcome(command, changed), command.failure) << "another command";
    }
}

TEST(SDTAnswerTest, CountsThatReachPastTheMessage) {
    const auto cases = commandCases();
    const Bytes& block = cases[1].good;
    for (const Bytes& length : {Bytes{17, 0}, Bytes{0, 1}, Bytes{0xFF, 0xFF}}) {
        EXPECT_EQ(outcome(cases[1], with(block, 22, length)), cases[1].failure);
    }
    const Bytes& list = cases[3].good;
    EXPECT_EQ(outcome(cases[3], with(list, 8, {3})), cases[3].failure) << "groups";
    EXPECT_EQ(outcome(cases[3], with(list, 8, {255})), cases[3].failure) << "groups";
    EXPECT_EQ(outcome(cases[3], with(list, 21, {255})), cases[3].failure) << "first group";
    EXPECT_EQ(outcome(cases[3], with(list, 41, {2})), cases[3].failure) << "last group";
}

}  // namespace
}  // namespace tavocal
