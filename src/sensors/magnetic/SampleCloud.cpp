#include "sensors/magnetic/SampleCloud.h"

#include <algorithm>
#include <iterator>

#include "base/Failures.h"
#include "numerics/MatrixInverse.h"
#include "numerics/NormalEquations.h"
#include "sensors/magnetic/Ellipsoid.h"

namespace tavocal {

std::vector<Sample> spreadSamples(const std::vector<Sample>& samples, double minDistance) {
    if (samples.empty()) {
        throw MathException("The buffer is empty");
    }
    std::vector<Sample> cloud = {samples.front()};
    std::copy_if(samples.begin() + 1, samples.end(), std::back_inserter(cloud),
                 [&](const Sample& sample) {
                     return norm(sample.values - cloud.back().values) > minDistance;
                 });
    return cloud;
}

Vector rotationAxis(std::span<const Sample> samples, const Ellipsoid& ellipsoid) {
    NormalEquations cone(3);
    for (const Sample& sample : samples) {
        const Vector v = ellipsoid.apply(sample.values);
        cone.add(v, -norm(v));
    }
    // (inverse * transpose(A)) * b, the product from the left: it rounds otherwise than
    // inverse * (transpose(A) * b).
    const Matrix inverted = inverse3(cone.gram());
    Vector x(3);
    for (const Sample& sample : samples) {
        const Vector v = ellipsoid.apply(sample.values);
        x += (inverted * v) * -norm(v);
    }
    return normalized(x);
}

}  // namespace tavocal
