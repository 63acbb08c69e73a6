#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "formats/CsvParser.h"
#include "fuzz/Attempt.h"
#include "fuzz/InputBytes.h"
#include "fuzz/ScratchFolder.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace {

// Times don't fall, and a sample has all of the sensor's values or none.
bool isSound(const std::vector<tavocal::Sample>& samples, int valuesPerSample) {
    double time = 0.0;
    for (const tavocal::Sample& sample : samples) {
        const int count = sample.values.size();
        if (!(sample.timestamp >= time) || (count != 0 && count != valuesPerSample)) {
            return false;
        }
        time = sample.timestamp;
    }
    return true;
}

}  // namespace

// The lowest bits of the first byte pick the sensor's class, the next one whether the LUID line is
// taken; the rest is its dump.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::ScratchFolder folder;
    static constexpr std::array<std::uint16_t, 8> kTypes = {
        tavocal::kAccelerometerType, tavocal::kAmbientLightType, tavocal::kGyroscopeType,
        tavocal::kMagnetometerType,  tavocal::kCompassType,      0x1234,
        tavocal::kAccelerometerType, tavocal::kAmbientLightType};
    tavocal::fuzz::InputBytes input(data, size);
    const std::uint8_t choice = input.byte();
    const auto sensor = tavocal::makeSensor({kTypes[choice % kTypes.size()], 0, 0, 0, 0});
    sensor->name = "Sensor";
    folder.write("Sensor.csv", input.remaining());
    const bool readsLuid = (choice & kTypes.size()) != 0;
    tavocal::fuzz::attempt([&] {
        const auto samples =
            tavocal::CsvParser().readFromFile(folder.path(""), {sensor}, readsLuid);
        if (!isSound(samples.at(sensor), sensor->valuesPerSample)) {
            std::abort();
        }
    });
    return 0;
}
