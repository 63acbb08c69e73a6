#include "sampling/ReportInterval.h"

#include <array>

#include "firmware/FakeKelu.h"
#include "firmware/SmhiLayout.h"
#include "sampling/FakeRunParts.h"
#include "simulator/messages/FirmwareAnswer.h"

namespace tavocal::test {

// A primary and a secondary sensor that tell such minimal intervals in milliseconds, or nothing if
// negative: the interval that is chosen, how often a sensor was asked, and a "!" for a warning.
static std::string outcome(RunCommand command, std::optional<int> option,
                           const std::array<int, 2>& minima) {
    const auto kelu = std::make_shared<FakeKelu>();
    kelu->onWrite = [&](const Bytes& request) {
        const int minimum = minima.at(request.at(smhi::kRequestLuidAt + 6));
        kelu->say(
            minimum < 0
                ? simulator::headerAnswer(smhi::kGetProperty, simulator::FirmwareStatus::WrongState)
                : simulator::propertyAnswer(smhi::kMinReportInterval,
                                            static_cast<std::uint32_t>(minimum) * 1000));
    };
    std::uint32_t chosen = 0;
    const std::string printed = printedBy([&] {
        chosen = chooseReportInterval(option, command,
                                      fakeSensors({"AmbientLightSensor_2", "AmbientLightSensor"}),
                                      [&] { return kelu; });
    });
    return std::to_string(chosen) + "/" + std::to_string(kelu->written().size()) +
           (printed.empty() ? "" : "!");
}

TEST(ReportInterval, FollowsTheOptionTheRunAndTheSensors) {
    using enum RunCommand;
    EXPECT_EQ(outcome(Calibrate, {}, {-1, -1}), "10/0");
    EXPECT_EQ(outcome(TestCalibration, {}, {99, 99}), "10/0");
    EXPECT_EQ(outcome(Calibrate, 50, {-1, -1}), "50/0");
    EXPECT_EQ(outcome(CalibrateAls, 5, {-1, -1}), "5/0");
    EXPECT_EQ(outcome(CalibrateAls, {}, {5, 19}), "20/2");
    EXPECT_EQ(outcome(CalibrateAls, {}, {99, 30}), "99/2");
    EXPECT_EQ(outcome(CalibrateAls, {}, {-1, 99}), "20/2!");
    EXPECT_EQ(outcome(CalibrateAls, {}, {0, 0}), "20/2!");
}

}  // namespace tavocal::test
