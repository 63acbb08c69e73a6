#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>

namespace tavocal::bench {

template <typename Operation>
double seconds(Operation operation) {
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Runs both operations in turn and reports the shortest time of `ours` over the shortest time of
// `yardstick` as the counter "ratio", a figure that means the same on a slow and a fast machine.
// The time that the benchmark itself shows is that of the pair.
template <typename Ours, typename Yardstick>
void reportRatio(benchmark::State& state, Ours ours, Yardstick yardstick) {
    double shortestOurs = std::numeric_limits<double>::infinity();
    double shortestYardstick = std::numeric_limits<double>::infinity();
    for ([[maybe_unused]] const auto unused : state) {
        shortestOurs = std::min(shortestOurs, seconds(ours));
        shortestYardstick = std::min(shortestYardstick, seconds(yardstick));
    }
    state.counters["ratio"] = shortestOurs / shortestYardstick;
}

}  // namespace tavocal::bench
