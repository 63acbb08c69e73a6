#include "sampling/ReportInterval.h"

#include <array>

#include "firmware/FakeKelu.h"
#include "firmware/SmhiLayout.h"
#include "sampling/FakeRunParts.h"
#include "simulator/firmware/FirmwareAnswer.h"

namespace tavocal::test {

TEST(ReportInterval, FollowsTheOptionTheRunAndTheSensors) {
    using enum RunCommand;
    // What was asked for, what a primary and a secondary sensor tell in milliseconds (nothing if
    // negative), what comes of it, and whether the operator is warned.
    const std::tuple<RunCommand, int, std::array<int, 2>, std::uint32_t, bool> rows[] = {
        {Calibrate, 0, {-1, -1}, 10, false},   {TestCalibration, 0, {99, 99}, 10, false},
        {Calibrate, 50, {-1, -1}, 50, false},  {CalibrateAls, 5, {-1, -1}, 5, false},
        {CalibrateAls, 0, {5, 19}, 20, false}, {CalibrateAls, 0, {99, 30}, 99, false},
        {CalibrateAls, 0, {-1, 99}, 20, true}, {CalibrateAls, 0, {0, 0}, 20, true}};
    for (const auto& row : rows) {
        const auto& [command, option, minima, interval, warns] = row;
        const auto kelu = std::make_shared<FakeKelu>();
        kelu->onWrite = [&](const Bytes& request) {
            const int minimum = std::get<2>(row).at(request.at(smhi::kRequestLuidAt + 6));
            kelu->say(minimum < 0
                          ? simulator::headerAnswer(smhi::kGetProperty,
                                                    simulator::FirmwareStatus::WrongState)
                          : simulator::propertyAnswer(smhi::kMinReportInterval,
                                                      static_cast<std::uint32_t>(minimum) * 1000));
        };
        std::uint32_t chosen = 0;
        const std::string printed = printedBy([&, wanted = option, type = command] {
            chosen = chooseReportInterval(
                wanted > 0 ? std::optional(wanted) : std::nullopt, type,
                fakeSensors({"AmbientLightSensor_2", "AmbientLightSensor"}), [&] { return kelu; });
        });
        EXPECT_EQ(chosen, interval);
        EXPECT_NE(printed.empty(), warns);
        EXPECT_EQ(kelu->written().size(), option == 0 && command == CalibrateAls ? 2U : 0U);
    }
}

}  // namespace tavocal::test
