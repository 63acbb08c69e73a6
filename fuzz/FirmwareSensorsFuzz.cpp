#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "base/Text.h"
#include "calibration/CalibrationBlock.h"
#include "formats/SensorXml.h"
#include "fuzz/AnsweringKelu.h"
#include "fuzz/Attempt.h"
#include "numerics/Sample.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "xml/XmlDocument.h"
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

// What a file can't hold: a head without a version, the bits of a static block's axis mapping that
// mean nothing, and a light block's divider of 0, which is read as 1.
void leaveOutUntold(const tavocal::Sensor& sensor, tavocal::CalibrationBlock& block) {
    constexpr std::size_t kMappingEnd = 38;
    constexpr std::size_t kDividerAt = 4;
    block.resize(std::max(block.size(), std::size_t{2}));
    if (block[0] >= tavocal::kFirstVendorFormat) {
        return;
    }
    if (sensor.sensorKind == tavocal::SensorKind::Inertial && sensor.isStatic()) {
        block[kMappingEnd - 2] &= 0x03;
        block[kMappingEnd - 1] = 0;
    } else if (sensor.sensorKind == tavocal::SensorKind::AmbientLight && block[kDividerAt] == 0) {
        block[kDividerAt] = 1;
    }
}

// Nothing if the element can't be read.
std::shared_ptr<tavocal::Sensor> readBack(const tavocal::XmlElement& element,
                                          tavocal::SDT& firmware) {
    tavocal::XmlDocument document;
    std::shared_ptr<tavocal::Sensor> sensor;
    if (document.loadBytes(tavocal::toUtf8(element.toString(0))) != tavocal::XmlResult::Success) {
        std::abort();
    }
    tavocal::fuzz::attempt(
        [&] { sensor = tavocal::loadSensorNode(*document.firstChild(), firmware); });
    return sensor;
}

// A block that can be told in XML is the same when it is read from there.
void tellAndRead(const tavocal::Sensor& sensor, tavocal::SDT& firmware) {
    std::unique_ptr<tavocal::XmlElement> element;
    tavocal::fuzz::attempt([&] { element = sensor.sensorToXml(true); });
    const auto read = element ? readBack(*element, firmware) : nullptr;
    if (read == nullptr) {
        return;
    }
    tavocal::CalibrationBlock told = sensor.originalCalibration;
    leaveOutUntold(sensor, told);
    leaveOutUntold(sensor, read->calibrationToWrite);
    if (told != read->calibrationToWrite) {
        std::abort();
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
    tellAndRead(sensor, firmware);
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
