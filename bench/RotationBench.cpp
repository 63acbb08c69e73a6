#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "bench/Ratio.h"
#include "sensors/magnetic/Magnetometer.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::bench {
namespace {

constexpr int kShortestTurn = 15;  // seconds
constexpr int kRate = 100;         // samples per second

// One slow turn about Z in a field of 480 mG.
std::vector<Sample> turnOf(int seconds) {
    const int count = seconds * kRate;
    std::vector<Sample> samples;
    for (int i = 0; i < count; ++i) {
        const double angle = 6.283185307179586 * i / count;
        samples.push_back(
            {1000.0 / kRate * i, {240.0 * std::cos(angle), 240.0 * std::sin(angle), -415.0}});
    }
    return samples;
}

// Asks at each sample whether the device has turned since the first one.
void watchTurn(const std::vector<Sample>& samples) {
    Magnetometer magnetometer({kMagnetometerType, 0, 0, 0, kStaticFlag});
    for (const Sample& sample : samples) {
        magnetometer.bufferedData.push_back(sample);
        bool detected = magnetometer.rotationDetected(0.0);
        benchmark::DoNotOptimize(detected);
    }
}

// The time for each sample of a turn against that of the shortest turn: near 1 if it doesn't grow.
void askAtEverySample(benchmark::State& state) {
    const auto seconds = static_cast<int>(state.range(0));
    const std::vector<Sample> turn = turnOf(seconds);
    const std::vector<Sample> shortTurn = turnOf(kShortestTurn);
    reportRatio(
        state, [&] { watchTurn(turn); },
        [&] {
            for (int i = 0; i < seconds / kShortestTurn; ++i) {
                watchTurn(shortTurn);
            }
        });
}
BENCHMARK(askAtEverySample)->Arg(kShortestTurn)->Arg(30)->Arg(60)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavocal::bench
