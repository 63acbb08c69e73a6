#include <benchmark/benchmark.h>

#include <charconv>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "bench/ScratchFolder.h"
#include "formats/CsvParser.h"
#include "platform/Files.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::bench {
namespace {

// About 10 MB of text at 100 Hz.
constexpr int kSamples = 250000;

std::vector<Sample> restingSamples() {
    std::mt19937 engine(1);
    const auto noise = [&engine] { return static_cast<double>(engine()) / 4294967296.0 - 0.5; };
    std::vector<Sample> samples;
    for (int i = 0; i < kSamples; ++i) {
        samples.push_back({10.0 * i, {noise(), noise(), 1.0 + noise()}});
    }
    return samples;
}

// Every number of the text, whatever stands between two of them.
double sumOfNumbers(const std::string& text) {
    const char* at = text.data();
    const char* const end = at + text.size();
    double sum = 0.0;
    while (at != end) {
        double value = 0.0;
        const auto result = std::from_chars(at, end, value);
        if (result.ptr == at) {
            ++at;
        } else {
            sum += value;
            at = result.ptr;
        }
    }
    return sum;
}

// Reading a dump from its file against parsing its numbers in memory.
void readDump(benchmark::State& state) {
    const ScratchFolder folder;
    const std::string pathTemplate = folder.path("dump.csv");
    const std::shared_ptr<Sensor> sensor = makeSensor({kAccelerometerType, 0, 0, 0, kStaticFlag});
    CsvParser().writeToFile(pathTemplate, {{sensor, restingSamples()}});
    std::string text;
    platform::readFile(folder.path("dumpAccelerometer.csv"), text);
    reportRatio(
        state,
        [&] {
            SensorDataMap samples = CsvParser().readFromFile(pathTemplate, {sensor}, false);
            benchmark::DoNotOptimize(samples);
        },
        [&] {
            double sum = sumOfNumbers(text);
            benchmark::DoNotOptimize(sum);
        });
    state.counters["bytes"] = static_cast<double>(text.size());
}
BENCHMARK(readDump)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavocal::bench
