#include "sensors/inertial/StageStatistics.h"

#include <algorithm>
#include <cmath>

#include "base/Failures.h"
#include "numerics/Statistics.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

Vector stageMean(const std::vector<Sample>& samples, StageRange stage) {
    Vector sum(3);
    for (int i = stage.first; i < stage.end; ++i) {
        sum += samples[static_cast<std::size_t>(i)].values;
    }
    return sum / stage.count();
}

Vector stageDeviation(const std::vector<Sample>& samples, StageRange stage, const Vector& mean) {
    Vector squares(3);
    for (int i = stage.first; i < stage.end; ++i) {
        const Vector d = samples[static_cast<std::size_t>(i)].values - mean;
        squares += elementProduct(d, d);
    }
    return sqrtValues(squares / stage.count());
}

std::vector<Sample> positionSamples(const std::vector<Sample>& samples,
                                    const std::vector<int>& indexes, std::size_t begin) {
    std::vector<Sample> position;
    // The last sample of the stage belongs to the motion that ended it.
    appendSamples(position, samples, {indexes[begin], indexes[begin + 1] - 1});
    if (indexes.size() == kFullFlowEntries && begin + 3 < indexes.size()) {
        appendSamples(position, samples, {indexes[begin + 2], indexes[begin + 3]});
    }
    return position;
}

Vector noiseOfAxes(const std::vector<Sample>& samples) {
    Vector noise(3);
    std::vector<double> values(samples.size());
    for (int axis = 0; axis < noise.size(); ++axis) {
        std::transform(samples.begin(), samples.end(), values.begin(),
                       [axis](const Sample& sample) { return sample.values[axis]; });
        const double square = variance(values);
        noise[axis] = square < 0.0 ? kLostNoise : std::sqrt(square);
    }
    return noise;
}

double noiseOfNorms(const std::vector<Sample>& samples, const std::vector<int>& indexes,
                    int stages) {
    double sum = 0.0;
    std::size_t count = 0;
    for (int i = 0; i < stages; ++i) {
        const std::vector<double> norms = sampleNorms(samples, stageRange(indexes, i));
        const double m = mean(norms);
        for (const double length : norms) {
            sum += (length - m) * (length - m);
        }
        count += norms.size();
    }
    if (count == 0) {
        throw CalibrationException("Error. Divider is zero.");
    }
    return std::sqrt(sum / static_cast<double>(count));
}

int spikesIn(const std::vector<Sample>& samples, StageRange stage, double limit) {
    int count = 0;
    for (int i = stage.first; i < stage.end - 1; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (norm(samples[at].values - samples[at + 1].values) > limit) {
            ++count;
            ++i;  // the way back from a single outlier is no second spike
        }
    }
    return count;
}

FaceUpStatistics faceUpStatistics(const Sensor& sensor) {
    const double n = sensor.sampleCount;
    const Vector mean = sensor.sumOfValues / n;
    return {mean, sqrtValues(absValues(sensor.sumOfSquares / n - elementProduct(mean, mean)))};
}

}  // namespace tavocal
