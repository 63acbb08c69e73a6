#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "numerics/Decompositions.h"
#include "numerics/Matrix.h"
#include "numerics/MatrixInverse.h"
#include "numerics/Sample.h"
#include "numerics/Statistics.h"
#include "numerics/TextForms.h"

namespace tavocal::bench {
namespace {

// Enough repetitions of a short operation for the clock to see it.
constexpr int kRepetitions = 1000;

struct PlainSample {
    double timestamp;
    double x;
    double y;
    double z;
};

Matrix randomMatrix(int n) {
    std::mt19937 engine(1);
    Matrix m(n, n);
    for (int i = 0; i < n * n; ++i) {
        m.data()[i] = static_cast<double>(engine()) / 4294967296.0 - 0.5;
    }
    return m;
}

std::vector<Sample> randomSamples(int count) {
    std::mt19937 engine(1);
    std::vector<Sample> samples;
    for (int i = 0; i < count; ++i) {
        samples.push_back({10.0 * i,
                           {static_cast<double>(engine()), static_cast<double>(engine()),
                            static_cast<double>(engine())}});
    }
    return samples;
}

template <typename Operation>
auto repeated(Operation operation) {
    return [operation] {
        for (int i = 0; i < kRepetitions; ++i) {
            auto result = operation();
            benchmark::DoNotOptimize(result);
        }
    };
}

// Copying samples within memory that is there already, against a plain record of four doubles.
void copySamples(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const std::vector<Sample> samples = randomSamples(count);
    const std::vector<PlainSample> plain(samples.size(), PlainSample{1.0, 2.0, 3.0, 4.0});
    std::vector<Sample> samplesCopy = samples;
    std::vector<PlainSample> plainCopy = plain;
    reportRatio(
        state,
        [&] {
            std::copy(samples.begin(), samples.end(), samplesCopy.begin());
            benchmark::ClobberMemory();
        },
        [&] {
            std::copy(plain.begin(), plain.end(), plainCopy.begin());
            benchmark::ClobberMemory();
        });
}
BENCHMARK(copySamples)->Arg(100)->Arg(1000)->Arg(100000);

// Filling a new list one by one, as a sensor's buffer is filled.
void appendSamples(benchmark::State& state) {
    const std::vector<Sample> samples = randomSamples(10000);
    reportRatio(
        state,
        [&] {
            std::vector<Sample> buffer;
            for (const Sample& sample : samples) {
                buffer.push_back(sample);
            }
            benchmark::DoNotOptimize(buffer.data());
        },
        [&] {
            std::vector<PlainSample> buffer;
            for (const Sample& sample : samples) {
                buffer.push_back(
                    {sample.timestamp, sample.values[0], sample.values[1], sample.values[2]});
            }
            benchmark::DoNotOptimize(buffer.data());
        });
}
BENCHMARK(appendSamples);

// The general inverse against one product of the same size.
void inverseOverProduct(benchmark::State& state) {
    const Matrix m = randomMatrix(static_cast<int>(state.range(0)));
    reportRatio(state, repeated([&m] { return inverse(m); }), repeated([&m] { return m * m; }));
}
BENCHMARK(inverseOverProduct)->Arg(3)->Arg(12)->Arg(40);

// The matrix product against the bare loops over a flat array.
void productOverLoops(benchmark::State& state) {
    const Matrix m = randomMatrix(12);
    const auto loops = [&m] {
        std::array<double, 144> result;
        for (int r = 0; r < 12; ++r) {
            for (int c = 0; c < 12; ++c) {
                double total = 0.0;
                for (int i = 0; i < 12; ++i) {
                    total += m.data()[r * 12 + i] * m.data()[i * 12 + c];
                }
                result[static_cast<std::size_t>(r * 12 + c)] = total;
            }
        }
        return result;
    };
    reportRatio(state, repeated([&m] { return m * m; }), repeated(loops));
}
BENCHMARK(productOverLoops);

void svdOverProduct(benchmark::State& state) {
    const Matrix m = randomMatrix(3);
    reportRatio(state, repeated([&m] { return svd(m); }), repeated([&m] { return m * m; }));
}
BENCHMARK(svdOverProduct);

// The median of three axes against one full sort of as many values.
void medianOverSort(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const std::vector<Sample> samples = randomSamples(count);
    std::vector<double> values;
    for (const Sample& sample : samples) {
        values.insert(values.end(), sample.values.begin(), sample.values.end());
    }
    reportRatio(
        state,
        [&] {
            Vector medians = medianOfAxes(samples, 0, count - 1);
            benchmark::DoNotOptimize(medians);
        },
        [&] {
            std::vector<double> sorted = values;
            std::sort(sorted.begin(), sorted.end());
            benchmark::DoNotOptimize(sorted.data());
        });
}
BENCHMARK(medianOverSort)->Arg(100)->Arg(10000);

void compactRowOverPrintf(benchmark::State& state) {
    const Vector values{0.123456, -9.80665, 512.75};
    const auto print = [&values] {
        std::array<char, 128> text;
        std::snprintf(text.data(), text.size(), "%f,%f,%f;", values[0], values[1], values[2]);
        return text;
    };
    reportRatio(state, repeated([&values] { return compactRow(values); }), repeated(print));
}
BENCHMARK(compactRowOverPrintf);

}  // namespace
}  // namespace tavocal::bench
