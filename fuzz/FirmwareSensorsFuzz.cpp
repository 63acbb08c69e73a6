#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/AnsweringKelu.h"
#include "fuzz/Attempt.h"
#include "numerics/Sample.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "xml/XmlElement.h"

namespace {

constexpr std::size_t kMostSensors = 16;

void takeSample(tavocal::Sensor& sensor) {
    sensor.calcReverseSdt();
    tavocal::Sample sample{0.0, tavocal::Vector{0.5, -0.25, 1.0}};
    if (sensor.valuesPerSample == sample.values.size()) {
        sensor.reverseStaticCalibration(sample);
    }
}

// A block that the sensor took is one that it would take again, and can be told or fails.
void workWith(tavocal::Sensor& sensor, tavocal::SDT& firmware) {
    if (!tavocal::fuzz::attempt([&] { sensor.loadFromFirmware(firmware); })) {
        return;
    }
    if (sensor.calibrationLoaded) {
        sensor.validateCalibrationData(sensor.originalCalibration);
    }
    tavocal::fuzz::attempt([&] { sensor.sensorToXml(true); });
    tavocal::fuzz::attempt([&] { takeSample(sensor); });
    tavocal::fuzz::attempt([&] { sensor.setWhiteNoise(1e6); });
    tavocal::fuzz::attempt([&] { sensor.sensorToXml(false); });
}

}  // namespace

// The bytes are what the firmware answers to each kind of request: its sensors, and their blocks.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavocal::fuzz::InputBytes input(data, size);
    tavocal::SDT firmware = tavocal::fuzz::answeringFirmware(tavocal::fuzz::readAnswers(input));
    std::vector<tavocal::LUID> luids;
    tavocal::fuzz::attempt([&] { luids = firmware.enumerateSensors(); });
    luids.resize(std::min(luids.size(), kMostSensors));
    for (const tavocal::LUID& luid : luids) {
        workWith(*tavocal::makeSensor(luid), firmware);
    }
    return 0;
}
