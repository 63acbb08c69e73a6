#include "firmware/SDT.h"

#include <map>

#include "base/Text.h"
#include "firmware/FakeKelu.h"
#include "support/Lines.h"
#include "support/Outcome.h"
#include "support/TextTable.h"

namespace tavocal::test {
constexpr LUID kGyroscope = {0x0076, 0x1234, 0xABCD, 1, kStaticFlag};
const Bytes kBlock = {9, 8, 7};
const TextTable kWords = {{"LUID", "76003412cdab0102"}};
const std::vector<SampledSensor> kTwoSensors = {{{0x0073, 0, 0, 0, 2}, "Accelerometer"},
                                                {kGyroscope, "Gyroscope_2"}};

static std::string hex(const Bytes& message) {
    return hexText(message.data(), message.size());
}

static std::string joined(const auto& items, auto toText, const std::string& end) {
    std::string text;
    for (const auto& item : items) {
        text += toText(item) + end;
    }
    return text;
}

// Each gives its result as text.
const std::map<std::string, std::string (*)(SDT&)> kCommands = {
    {"reset", [](SDT& sdt) { return sdt.resetTavo(), std::string(); }},
    {"block", [](SDT& sdt) { return hex(sdt.getCalibrationData(kGyroscope)); }},
    {"store", [](SDT& sdt) { return sdt.setCalibrationData(kGyroscope, kBlock), std::string(); }},
    {"list", [](SDT& sdt) { return joined(sdt.enumerateSensors(), luidText, " "); }},
    {"form", [](SDT& sdt) { return std::to_string(sdt.getFormFactor()); }},
    {"hinge", [](SDT& sdt) { return std::to_string(sdt.getHinge()); }},
    {"interval", [](SDT& sdt) { return std::to_string(sdt.getMinReportInterval(kGyroscope)); }},
    {"stop", [](SDT& sdt) { return sdt.stopSampling({kTwoSensors[1]}), std::string(); }}};

class SDTTest : public testing::Test {
  protected:
    // What comes of a command with that answer, over a channel that was never used.
    std::string outcome(const std::string& command, const Bytes& answer) {
        renew();
        kelu->say(answer);
        std::string result;
        const std::string failure =
            messageOf<SmhiException>([&] { result = kCommands.at(command)(sdt); });
        EXPECT_EQ(kelu->connects * 10 + kelu->closes, 11);
        return failure == kNoFailure ? result : failure;
    }
    void renew() {
        kelu = std::make_shared<FakeKelu>();
        sdt = SDT([this] { return kelu; });
    }
    // One behind the other.
    std::string written() const { return joined(kelu->written(), hex, "\n"); }

    std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    SDT sdt{[this] { return kelu; }};
};

// Command and request; its answer (what nobody reads is cc), the bytes that it needs, the result,
// and the failure with # for the status.
TEST_F(SDTTest, EveryCommandWithEveryDamage) {
    for (const auto& [request, rest] : tableOfTest(kWords)) {
        SCOPED_TRACE(request);
        const std::vector<std::string> fields = linesOf(replaceAll(rest, ";", "\n"));
        const std::size_t needed = std::stoul(fields.at(1));
        const std::string command = request.substr(0, request.find(' '));
        const Bytes good = bytesOf(fields[0]);
        const auto failure = [&](int status) {
            const bool invalid = command == "store" && status == 5;
            return "SMHI Error:" + replaceAll(fields.at(3), "#", std::to_string(status)) +
                   (invalid ? " due to invalid parameter" : "");
        };
        for (std::size_t size = 0; size <= good.size(); ++size) {
            const Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_EQ(outcome(command, cut), size < needed ? failure(0) : fields[2]) << size;
            EXPECT_EQ(command + " " + written(), request + "\n");
        }
        const std::pair<std::size_t, int> damages[] = {
            {3, 1}, {3, 5}, {3, 255}, {0, good[0] & 0x7F}, {0, 0x8F}};
        for (const auto& [at, byte] : damages) {
            Bytes damaged = good;
            damaged[at] = static_cast<std::uint8_t>(byte);
            EXPECT_EQ(outcome(command, damaged), failure(at == 3 ? byte : 0)) << at << " " << byte;
        }
    }
}

TEST_F(SDTTest, CountsThatReachPastTheMessage) {
    for (const auto& [given, failure] : tableOfTest(kWords)) {
        const std::size_t blank = given.find(' ');
        EXPECT_EQ(outcome(given.substr(0, blank), bytesOf(given.substr(blank))),
                  "SMHI Error: " + failure)
            << given;
    }
}

TEST_F(SDTTest, SizesOfABlock) {
    sdt.setCalibrationData(kGyroscope, {});
    EXPECT_EQ(messageOf<SmhiException>([&] { sdt.setCalibrationData(kGyroscope, Bytes(65532)); }),
              "SMHI Error: Set calibration data command failed due to invalid parameter");
    EXPECT_EQ(kelu->connects, 0);
    kelu->say({0x85, 0, 0, 0});
    sdt.setCalibrationData(kGyroscope, Bytes(65531));
    EXPECT_EQ(kelu->written().at(0).size(), 65567U);
    EXPECT_EQ(written().substr(32, 8) + written().substr(56, 16), "0b000100ffff00010200fbff");
}

// Interval and sensitivity; both as they travel.
TEST_F(SDTTest, SamplingStartsSensorBySensor) {
    for (const auto& [given, sent] : tableOfTest()) {
        renew();
        kelu->onWrite = [this](const Bytes&) { kelu->say({0x8A, 0, 0, 0}); };
        sdt.startSampling(kTwoSensors, static_cast<std::uint32_t>(std::stoul(given)),
                          std::stod(given.substr(given.find(' '))));
        EXPECT_EQ(kelu->connects * 10 + kelu->closes, 11);
        std::string expected;
        for (const std::string luid : {"7300000000000002", "76003412cdab0102"}) {
            expected += "0a000000" + luid + "0e030400" + sent.substr(0, 8) + "\n0a000000" + luid +
                        "1603010002\n0a000000" + luid + "0f030400" + sent.substr(9) + "\n";
        }
        EXPECT_EQ(written(), expected) << given;
    }
}

TEST_F(SDTTest, SamplingFailureNamesTheSensor) {
    for (const bool refused : {false, true}) {
        renew();
        kelu->onWrite = [&](const Bytes&) {
            const bool last = kelu->written().size() == 5;
            last && !refused ? kelu->fail("Failed") : kelu->say({0x8A, 0, 0, last});
        };
        EXPECT_EQ(messageOf<CalibrationException>([&] { sdt.startSampling(kTwoSensors, 1, 0.0); }),
                  "Failed to sample sensor Gyroscope_2");
        EXPECT_EQ(kelu->written().size(), 5U);
        EXPECT_EQ(kelu->connected, !refused);
    }
}

TEST_F(SDTTest, ChannelFailurePassesThroughAndLeavesTheChannelOpen) {
    kelu->fail("Failed");
    EXPECT_EQ(messageOf<SmhiException>([&] { sdt.resetTavo(); }), "SMHI Error: Failed");
    kelu->say({0x82, 0, 0, 0});
    sdt.resetTavo();
    EXPECT_EQ(kelu->connects, 1);
    kelu->onConnect = [] { throw SmhiException("No channel"); };
    EXPECT_EQ(messageOf<SmhiException>([&] { sdt.startSampling(kTwoSensors, 10, 0.0); }),
              "SMHI Error: No channel");
}

}  // namespace tavocal::test
