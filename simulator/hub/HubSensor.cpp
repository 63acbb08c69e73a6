#include "simulator/hub/HubSensor.h"

#include <limits>

#include "base/Bytes.h"
#include "firmware/SmhiLayout.h"

namespace tavocal::simulator {

namespace {

constexpr std::uint32_t kDefaultInterval = 100000;
constexpr std::uint32_t kLongestInterval = 60000000;
constexpr double kMicrosecondsPerSecond = 1e6;

// Microseconds.
std::uint32_t shortestInterval(SensorKind kind) {
    return kind == SensorKind::AmbientLight ? 20000 : 5000;
}

std::string streamOf(const LUID& luid) {
    return "clock of " + luidText(luid);
}

}  // namespace

HubSensor::HubSensor(SensorKind theKind, const LUID& theLuid, double jitterSeconds,
                     std::uint64_t theSeed)
    : sensorKind(theKind),
      id(theLuid),
      jitter(jitterSeconds),
      seed(theSeed),
      interval(kDefaultInterval) {}

FirmwareStatus HubSensor::setProperty(std::uint16_t property, const Bytes& data, double now) {
    const ByteReader reader(data);
    if (property == smhi::kReportingState) {
        return data.size() == 1 ? setReporting(reader.u8(0), now) : FirmwareStatus::Malformed;
    }
    if (property != smhi::kReportInterval && property != smhi::kChangeSensitivity) {
        return FirmwareStatus::InvalidParameter;
    }
    if (data.size() != sizeof(std::uint32_t)) {
        return FirmwareStatus::Malformed;
    }
    if (property == smhi::kReportInterval) {
        return setInterval(reader.u32(0), now);
    }
    sensitivity = reader.u32(0);
    return FirmwareStatus::Success;
}

FirmwareStatus HubSensor::setInterval(std::uint32_t microseconds, double now) {
    if (microseconds < shortestInterval(sensorKind) || microseconds > kLongestInterval) {
        return FirmwareStatus::InvalidParameter;
    }
    interval = microseconds;
    if (clock) {
        startClock(now);
    }
    return FirmwareStatus::Success;
}

FirmwareStatus HubSensor::setReporting(std::uint8_t state, double now) {
    if (state != smhi::kStartReports && state != smhi::kStopReports) {
        return FirmwareStatus::InvalidParameter;
    }
    if (state == smhi::kStopReports) {
        clock.reset();
    } else {
        switchOn(now);
    }
    return FirmwareStatus::Success;
}

std::optional<std::uint32_t> HubSensor::property(std::uint16_t property) const {
    switch (property) {
        case smhi::kMinReportInterval:
            return shortestInterval(sensorKind);
        case smhi::kReportInterval:
            return interval;
        case smhi::kChangeSensitivity:
            return sensitivity;
        case smhi::kReportingState:
            return clock ? smhi::kStartReports : smhi::kStopReports;
        default:
            return std::nullopt;
    }
}

void HubSensor::switchOn(double now) {
    if (!clock && isStatic()) {
        startClock(now);
    }
}

void HubSensor::startClock(double now) {
    const double rate = kMicrosecondsPerSecond / interval;
    Random random(seed, streamOf(id) + ", phase");
    clock.emplace(rate, jitter, now + random.uniform(0.0, 1.0 / rate), seed, streamOf(id));
}

void HubSensor::reset() {
    clock.reset();
    interval = kDefaultInterval;
    sensitivity = 0;
}

double HubSensor::nextSample() const {
    return clock ? clock->next() : std::numeric_limits<double>::infinity();
}

void HubSensor::step() {
    clock->step();
}

}  // namespace tavocal::simulator
