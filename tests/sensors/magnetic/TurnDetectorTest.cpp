#include "sensors/magnetic/TurnDetector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "numerics/NumericsTesting.h"
#include "numerics/Statistics.h"

namespace tavocal::test {
namespace {

using Samples = std::vector<Sample>;

// The same from scratch.
double plainRange(const Samples& samples, double since) {
    const int last = static_cast<int>(samples.size()) - 1;
    int first = 0;
    for (int i = 0; i <= last; ++i) {
        first = samples[static_cast<std::size_t>(i)].timestamp <= since ? i : first;
    }
    double range = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        double smallest = INFINITY;
        double largest = -INFINITY;
        for (int middle = first + 5; middle <= last - 5; ++middle) {
            const double median = medianOfAxes(samples, middle - 5, middle + 5)[axis];
            smallest = std::min(smallest, median);
            largest = std::max(largest, median);
        }
        range = std::max(range, largest - smallest);
    }
    return range;
}

TEST(TurnDetector, AnswersAsIfItLookedAtAllSamplesEachTime) {
    forEachSeed([](RandomNumbers& random) {
        TurnDetector detector;
        Samples samples;
        Vector value(3);
        double time = 0.0;
        double since = -50.0;
        for (int i = 0; i < 200; ++i) {
            time += std::floor(random.between(0.0, 3.0));  // times may repeat
            if (random.between(0.0, 1.0) < 0.01) {
                time += std::floor(random.between(-100.0, 1e9));  // the clock is set anew
            }
            value = value + random.vector(3, 40.0);
            samples.push_back({time, value + random.vector(3, i % 7 == 0 ? 500.0 : 5.0)});
            if (i % 60 > 45) {
                samples.back().values[2] = std::nan("");  // which gives medians that are none
            }
            if (random.between(0.0, 1.0) < 0.02) {
                // Also ahead of the newest sample, which later ones catch up with.
                since = time + std::floor(random.between(-20.0, 20.0));
            }
            if (random.between(0.0, 1.0) < 0.8) {
                ASSERT_EQ(detector.range(samples, since), plainRange(samples, since)) << i;
            }
        }
    });
}

}  // namespace
}  // namespace tavocal::test
