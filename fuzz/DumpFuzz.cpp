#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "base/Failures.h"
#include "formats/CsvParser.h"
#include "fuzz/InputFile.h"
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

// The first byte picks the kind of sensor, the rest is its dump.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::InputFile file("Sensor.csv");
    if (size == 0) {
        return 0;
    }
    const bool isLight = data[0] % 2 == 1;
    const auto sensor = tavocal::makeSensor(
        {isLight ? tavocal::kAmbientLightType : tavocal::kAccelerometerType, 0, 0, 0, 0});
    sensor->name = "Sensor";
    file.write(data + 1, size - 1);
    try {
        const auto samples = tavocal::CsvParser().readFromFile(file.stem(), {sensor}, false);
        if (!isSound(samples.at(sensor), sensor->valuesPerSample)) {
            std::abort();
        }
    } catch (const tavocal::CalibrationException&) {
    } catch (const tavocal::MathException&) {
    }
    return 0;
}
