#include "sensors/magnetic/SampleCloud.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "numerics/NumericsTesting.h"
#include "sensors/magnetic/Ellipsoid.h"

namespace tavocal::test {
namespace {

TEST(SampleCloud, KeepsWhatLiesFurtherFromTheOneKeptLast) {
    using List = std::vector<double>;
    const auto kept = [](double minDistance, const List& line) {
        std::vector<Sample> samples;
        for (const double x : line) {
            samples.push_back({x, {0.6 * x, 0.0, 0.8 * x}});
        }
        List result;
        for (const Sample& sample : spreadSamples(samples, minDistance)) {
            result.push_back(sample.timestamp);
        }
        return result;
    };
    EXPECT_EQ(kept(2.0, {0, 1, 2, 3, 4, 5.5, 0}), (List{0, 3, 5.5, 0}));
    EXPECT_EQ(kept(0.0, {1, 1, 2, std::nan(""), 2, 1, 1}), (List{1, 2, 1}));
    EXPECT_EQ(mathError([&] { kept(1.0, {}); }), "Math Error: The buffer is empty");
}

TEST(SampleCloud, TheAxisIsThatOfTheConeThatTheFieldTraces) {
    forEachSeed([](RandomNumbers& random) {
        const Vector axis = random.unitVector();
        Vector reading = random.unitVector() * random.between(100.0, 600.0);
        // Below the plane of the turn, as the field is in the northern half.
        reading = reading - axis * (std::max(dot(reading, axis), 0.0) * 2.0 + 20.0);
        Ellipsoid ellipsoid;
        ellipsoid.center = random.vector(3, 300.0);
        std::vector<Sample> samples;
        for (int i = 0; i < 200; ++i) {
            samples.push_back({0, rotationMatrix(axis * (0.03 * i)) * reading + ellipsoid.center});
        }
        EXPECT_LT(maxDifference(rotationAxis(samples, ellipsoid), axis), 1e-9);
    });
}

}  // namespace
}  // namespace tavocal::test
