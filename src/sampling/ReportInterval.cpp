#include "sampling/ReportInterval.h"

#include <algorithm>
#include <string>

#include "base/Failures.h"
#include "platform/Console.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

constexpr std::uint32_t kMotionInterval = 10;
constexpr std::uint32_t kLightInterval = 20;

// 0 if a sensor doesn't tell.
std::uint32_t largestMinimalInterval(const std::vector<std::shared_ptr<Sensor>>& sensors,
                                     const SDT::ChannelFactory& makeChannel) {
    std::uint32_t largest = 0;
    bool queryFailed = false;
    for (const auto& sensor : sensors) {
        try {
            largest = std::max(largest, SDT(makeChannel).getMinReportInterval(sensor->getLuid()));
        } catch (const SmhiException&) {
            queryFailed = true;
        }
    }
    return queryFailed ? 0 : largest;
}

}  // namespace

std::uint32_t chooseReportInterval(std::optional<int> wanted, RunCommand runType,
                                   const std::vector<std::shared_ptr<Sensor>>& sensors,
                                   const SDT::ChannelFactory& makeChannel) {
    if (wanted) {
        return static_cast<std::uint32_t>(std::max(*wanted, 0));
    }
    if (runType != RunCommand::CalibrateAls) {
        return kMotionInterval;
    }
    const std::uint32_t largest = largestMinimalInterval(sensors, makeChannel);
    if (largest == 0) {
        platform::print(
            "failed to get minimal reporting interval from sensor, will use default sampling "
            "interval: " +
            std::to_string(kLightInterval) + "ms\n");
    }
    return std::max(largest, kLightInterval);
}

}  // namespace tavocal
