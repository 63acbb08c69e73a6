#include "simulator/world/Oscillation.h"

#include <cmath>
#include <cstddef>

#include "simulator/maths/Random.h"

namespace tavocal::simulator {

Oscillation::Oscillation(Random& random, std::initializer_list<double> frequencies,
                         const std::vector<double>& amplitudes) {
    std::size_t index = 0;
    for (const double frequency : frequencies) {
        // No two hands tremble at quite the same frequencies.
        const double angularFrequency = 2.0 * kPi * frequency * random.uniform(0.97, 1.03);
        Vec3 phase;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            phase[axis] = random.uniform(0.0, 2.0 * kPi);
        }
        waves.push_back({angularFrequency, amplitudes[index++], phase});
    }
}

Vec3 Oscillation::at(double seconds) const {
    Vec3 sum;
    for (const Wave& wave : waves) {
        const double angle = wave.angularFrequency * seconds;
        sum += wave.amplitude * Vec3{std::sin(angle + wave.phase.x), std::sin(angle + wave.phase.y),
                                     std::sin(angle + wave.phase.z)};
    }
    return sum;
}

}  // namespace tavocal::simulator
