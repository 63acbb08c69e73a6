#include "simulator/device/Device.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "simulator/device/SensorFactory.h"
#include "simulator/maths/Random.h"

namespace tavocal::simulator {

namespace {

constexpr double kGravity = 9.80665;            // metres per second squared
constexpr Vec3 kUp{0.0, 0.0, 1.0};              // world frame
constexpr Vec3 kSensorPlace{0.03, -0.04, 0.0};  // metres from the middle, device frame

Hand makeHand(const DeviceOptions& options) {
    Random random(options.seed, "hand");
    return Hand(options.hand, random);
}

}  // namespace

Device::Device(const DeviceOptions& options)
    : trajectory(makeHand(options)),
      magneticField(options.fieldMg, options.dipDegrees),
      sensorModels(makeSensors(options)),
      tick(options.wholeMilliseconds ? 1.0 : 0.001) {
    for (const Magnet& magnet : magnetsOf(options.room)) {
        magneticField.addMagnet(magnet);
    }
    for (std::size_t i = 0; i < sensorModels.size(); ++i) {
        const std::string stream = "clock of " + sensorModels[i].name();
        Random random(options.seed, stream + ", phase");
        // The hub's time begins with its first sample.
        const double phase = i == 0 ? 0.0 : random.uniform(0.0, 1.0 / options.rateHz);
        channels.push_back(
            {i, SampleClock(options.rateHz, options.jitterMs / 1000.0, phase, options.seed, stream),
             std::numeric_limits<double>::infinity()});
    }
}

void Device::advanceTo(double seconds, const SampleSink& sink) {
    while (Channel* channel = earliest(seconds)) {
        const Row row = nextRow(*channel);
        sink(sensorModels[channel->sensor], row);
    }
}

Device::Channel* Device::earliest(double limit) {
    Channel* found = nullptr;
    for (Channel& channel : channels) {
        const double due = channel.clock.next();
        if (due <= limit && due < channel.end && (!found || due < found->clock.next())) {
            found = &channel;
        }
    }
    return found;
}

Row Device::nextRow(Channel& channel) {
    SensorModel& sensor = sensorModels[channel.sensor];
    const double due = channel.clock.next();
    channel.clock.step();
    const Vec3 reading = sensor.read(trueValue(sensor.kind(), due));
    return {std::round(due * 1000.0 / tick) * tick, {reading.x, reading.y, reading.z}};
}

std::optional<Vec3> Device::read(std::size_t sensor, double seconds) {
    if (seconds >= channels[sensor].end) {
        return std::nullopt;
    }
    return sensorModels[sensor].read(trueValue(sensorModels[sensor].kind(), seconds));
}

void Device::silence(SensorKind kind, double seconds) {
    for (Channel& channel : channels) {
        if (sensorModels[channel.sensor].kind() == kind) {
            channel.end = std::min(channel.end, seconds);
        }
    }
}

Vec3 Device::trueValue(SensorKind kind, double seconds) const {
    if (kind == SensorKind::Gyroscope) {
        return trajectory.angularRate(seconds);
    }
    const Quaternion toDevice = conjugate(trajectory.poseAt(seconds).attitude);
    if (kind == SensorKind::Magnetometer) {
        return rotate(toDevice,
                      magneticField.at(trajectory.positionOf(seconds, kSensorPlace), seconds));
    }
    return rotate(toDevice,
                  kUp + trajectory.acceleration(seconds, kSensorPlace) * (1.0 / kGravity));
}

}  // namespace tavocal::simulator
