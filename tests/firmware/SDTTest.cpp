#include "firmware/SDT.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/Text.h"
#include "firmware/FakeKelu.h"
#include "support/MessageOf.h"
#include "support/TextTable.h"

namespace tavocal::test {
namespace {

constexpr LUID kGyroscope = {0x0076, 0x1234, 0xABCD, 1, kStaticFlag};
const std::string kGyroscopeHex = "76003412cdab0102";
const std::vector<SampledSensor> kTwoSensors = {{{0x0073, 0, 0, 0, 2}, "Accelerometer"},
                                                {kGyroscope, "Gyroscope_2"}};

// Blanks don't count, LUID stands for the gyroscope's.
Bytes bytes(std::string hex) {
    hex = replaceAll(replaceAll(hex, " ", ""), "LUID", kGyroscopeHex);
    Bytes result;
    for (std::size_t at = 0; at < hex.size(); at += 2) {
        result.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(at, 2), nullptr, 16)));
    }
    return result;
}

std::string hex(const Bytes& message) {
    return replaceAll(hexText(message.data(), message.size()), kGyroscopeHex, "LUID");
}

struct Command {
    std::string name;
    std::string (*run)(SDT&);  // the result as text
    std::string request;
    std::string answer;  // what nobody reads is cc
    std::string result;
    std::size_t needed;   // bytes of the answer
    std::string failure;  // # stands for the status
};

const std::string kSettingFailure = "Set PDT command  failed, status: #";
const std::vector<Command> kCommands = {
    {"reset", [](SDT& sdt) { return sdt.resetTavo(), std::string(); }, "02000000", "82cccc00", "",
     4, "Reset Tavo command failed"},
    {"get", [](SDT& sdt) { return hex(sdt.getCalibrationData(kGyroscope)); }, "04000000LUID0000",
     "84cccc00 cccccccccccccccccccc cccccccccccccccc 0300 090807 cc", "090807", 27,
     "Get calibration data command failed"},
    {"get nothing", [](SDT& sdt) { return hex(sdt.getCalibrationData(kGyroscope)); },
     "04000000LUID0000", "84cccc00 cccccccccccccccccccc cccccccccccccccc 0000 cc", "", 24,
     "Get calibration data command failed"},
    {"set",
     [](SDT& sdt) {
         return sdt.setCalibrationData(kGyroscope, {9, 8, 7}), std::string();
     },
     "05000000LUID0000000013000000LUID0700000102000300090807", "85cccc00", "", 4,
     "Set calibration data command failed"},
    {"list",
     [](SDT& sdt) {
         std::string text;
         for (const LUID& luid : sdt.enumerateSensors()) {
             text += luidText(luid) + " ";
         }
         return text;
     },
     "0400000000000000000000000002",
     "84cccc00 cccccccc 03cc cccccccccccccccccccccc 02 LUID 7300010002000001"
     "cccccccccccccccccccccc 00 cccccccccccccccccccccc 01 7300000000000001 cc",
     "00761234abcd0102 0073000100020001 0073000000000001 ", 70, "Enumerate sensors command failed"},
    {"no list", [](SDT& sdt) { return std::to_string(sdt.enumerateSensors().size()); },
     "0400000000000000000000000002", "84cccc00 cccccccc 00", "0", 9,
     "Enumerate sensors command failed"},
    {"form factor", [](SDT& sdt) { return std::to_string(sdt.getFormFactor()); },
     "0400000000000000000000000004", "84cccc00 cccccccccc 03 cccccc 02", "3", 10, kSettingFailure},
    {"hinge", [](SDT& sdt) { return std::to_string(sdt.getHinge()); },
     "0400000000000000000000000004", "84cccc00 cccccccccc 03 cccccc 02", "2", 14, kSettingFailure},
    {"interval", [](SDT& sdt) { return std::to_string(sdt.getMinReportInterval(kGyroscope)); },
     "09000000LUID0403", "89cccc00 cccccccc cf070100", "67", 12, kSettingFailure},
    {"stop", [](SDT& sdt) { return sdt.stopSampling({kTwoSensors[1]}), std::string(); },
     "0a000000LUID1603010001", "8acccc00", "", 4, "Set sampling configuration data command failed"},
};

class SDTTest : public testing::Test {
  protected:
    // What comes of a command with that answer, over a channel that was never used.
    std::string outcome(const Command& command, const Bytes& answer) {
        renew();
        kelu->say(answer);
        std::string result;
        const std::string failure = messageOf<SmhiException>([&] { result = command.run(sdt); });
        EXPECT_EQ(kelu->written(), std::vector<Bytes>{bytes(command.request)});
        EXPECT_EQ(kelu->connects, 1);
        EXPECT_EQ(kelu->closes, 1);
        return failure == kNoFailure ? result : failure;
    }
    void renew() {
        kelu = std::make_shared<FakeKelu>();
        sdt = SDT([this] { return kelu; });
    }
    std::vector<std::string> written() const {
        std::vector<std::string> requests;
        for (const Bytes& request : kelu->written()) {
            requests.push_back(hex(request));
        }
        return requests;
    }
    void answerAll() {
        kelu->onWrite = [this](const Bytes&) { kelu->say(bytes("8acccc00")); };
    }

    std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    SDT sdt{[this] { return kelu; }};
};

TEST_F(SDTTest, EveryCommandWithEveryDamage) {
    for (const Command& command : kCommands) {
        SCOPED_TRACE(command.name);
        const auto failure = [&command](int status) {
            const bool invalid = command.name == "set" && status == 5;
            return "SMHI Error: " + replaceAll(command.failure, "#", std::to_string(status)) +
                   (invalid ? " due to invalid parameter" : "");
        };
        const Bytes good = bytes(command.answer);
        for (std::size_t size = 0; size <= good.size(); ++size) {
            const Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_EQ(outcome(command, cut), size < command.needed ? failure(0) : command.result)
                << size;
        }
        Bytes damaged = good;
        for (const int status : {1, 5, 255}) {
            damaged[3] = static_cast<std::uint8_t>(status);
            EXPECT_EQ(outcome(command, damaged), failure(status));
        }
        damaged = good;
        for (const int first : {good[0] & 0x7F, 0x8F}) {
            damaged[0] = static_cast<std::uint8_t>(first);
            EXPECT_EQ(outcome(command, damaged), failure(0)) << first;
        }
    }
}

TEST_F(SDTTest, CountsThatReachPastTheMessage) {
    // The name, the byte with a count, and counts that are too many.
    const struct {
        const Command& command;
        std::size_t at;
        std::vector<std::uint8_t> counts;
    } cases[] = {{kCommands[1], 22, {5, 255}},
                 {kCommands[1], 23, {1, 255}},
                 {kCommands[4], 8, {4, 255}},
                 {kCommands[4], 21, {255}},
                 {kCommands[4], 61, {2, 255}}};
    for (const auto& [command, at, counts] : cases) {
        for (const std::uint8_t count : counts) {
            Bytes answer = bytes(command.answer);
            answer[at] = count;
            EXPECT_EQ(outcome(command, answer), "SMHI Error: " + command.failure);
        }
    }
}

TEST_F(SDTTest, SizesOfABlock) {
    sdt.setCalibrationData(kGyroscope, {});
    EXPECT_EQ(messageOf<SmhiException>([&] { sdt.setCalibrationData(kGyroscope, Bytes(65532)); }),
              "SMHI Error: Set calibration data command failed due to invalid parameter");
    EXPECT_EQ(kelu->connects, 0);
    kelu->say(bytes("85000000"));
    sdt.setCalibrationData(kGyroscope, Bytes(65531, 0x5A));
    EXPECT_EQ(kelu->written().at(0).size(), 65567U);
    EXPECT_EQ(hex(kelu->written()[0]).substr(0, 52),
              "05000000LUID000000000b000100LUIDffff00010200fbff5a5a");
}

TEST_F(SDTTest, SamplingStartsAndStopsSensorBySensor) {
    answerAll();
    sdt.startSampling(kTwoSensors, 10, 2.9);
    EXPECT_EQ(kelu->connects, 1);
    EXPECT_FALSE(kelu->connected);
    sdt.stopSampling(kTwoSensors);
    EXPECT_FALSE(kelu->connected);
    std::vector<std::string> expected;
    for (const std::string rest : {"0e03040010270000", "1603010002", "0f03040002000000"}) {
        expected.push_back("0a0000007300000000000002" + rest);
    }
    for (const std::string rest : {"0e03040010270000", "1603010002", "0f03040002000000"}) {
        expected.push_back("0a000000LUID" + rest);
    }
    expected.insert(expected.end(),
                    {"0a00000073000000000000021603010001", "0a000000LUID1603010001"});
    EXPECT_EQ(written(), expected);
}

TEST_F(SDTTest, NumbersBeyondTheWireBecomeTheNearest) {
    constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();
    const struct {
        std::uint32_t interval;
        double sensitivity;
        std::string intervalHex, sensitivityHex;
    } cases[] = {{4294967, -1.0, "d8feffff", "00000000"},
                 {4294968, std::nan(""), "ffffffff", "00000000"},
                 {kMost, 1e30, "ffffffff", "ffffffff"},
                 {0, 4294967294.9, "00000000", "feffffff"}};
    for (const auto& item : cases) {
        renew();
        answerAll();
        sdt.startSampling({kTwoSensors[1]}, item.interval, item.sensitivity);
        EXPECT_EQ(written(),
                  (std::vector<std::string>{"0a000000LUID0e030400" + item.intervalHex,
                                            "0a000000LUID1603010002",
                                            "0a000000LUID0f030400" + item.sensitivityHex}));
    }
}

TEST_F(SDTTest, SamplingFailureNamesTheSensor) {
    for (const bool refused : {false, true}) {
        renew();
        for (int i = 0; i < 4; ++i) {
            kelu->say(bytes("8a000000"));
        }
        if (refused) {
            kelu->say(bytes("8a000001"));
        }
        EXPECT_EQ(messageOf<CalibrationException>([&] { sdt.startSampling(kTwoSensors, 1, 0.0); }),
                  "Failed to sample sensor Gyroscope_2");
        EXPECT_EQ(kelu->written().size(), 5U);
        EXPECT_EQ(kelu->connected, !refused);
    }
}

TEST_F(SDTTest, ChannelFailurePassesThroughAndLeavesTheChannelOpen) {
    kelu->fail("Failed to read from device");
    EXPECT_EQ(messageOf<SmhiException>([&] { sdt.resetTavo(); }),
              "SMHI Error: Failed to read from device");
    EXPECT_TRUE(kelu->connected);
    kelu->say(bytes("82000000"));
    sdt.resetTavo();
    EXPECT_EQ(kelu->connects, 1);
    kelu->connectFailure = "Failed to enumerate device interfaces";
    EXPECT_EQ(messageOf<SmhiException>([&] { sdt.startSampling(kTwoSensors, 10, 0.0); }),
              "SMHI Error: Failed to enumerate device interfaces");
}

}  // namespace
}  // namespace tavocal::test
