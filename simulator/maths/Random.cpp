#include "simulator/maths/Random.h"

#include <bit>
#include <cmath>

namespace tavocal::simulator {

namespace {

// Fowler, Noll and Vo's hash, 64 bits, variant 1a.
std::uint64_t hash(std::string_view text) {
    std::uint64_t value = 14695981039346656037u;
    for (const char c : text) {
        value = (value ^ static_cast<unsigned char>(c)) * 1099511628211u;
    }
    return value;
}

std::uint64_t splitmix(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15u;
    std::uint64_t z = state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

}  // namespace

Random::Random(std::uint64_t seed, std::string_view stream) {
    std::uint64_t mixed = seed ^ hash(stream);
    for (std::uint64_t& word : state) {
        word = splitmix(mixed);
    }
}

std::uint64_t Random::next() {
    const std::uint64_t result = std::rotl(state[1] * 5, 7) * 9;
    const std::uint64_t shifted = state[1] << 17;
    state[2] ^= state[0];
    state[3] ^= state[1];
    state[1] ^= state[2];
    state[0] ^= state[3];
    state[2] ^= shifted;
    state[3] = std::rotl(state[3], 45);
    return result;
}

double Random::uniform() {
    return static_cast<double>(next() >> 11) * 0x1p-53;
}

double Random::uniform(double low, double high) {
    return low + (high - low) * uniform();
}

std::size_t Random::below(std::size_t count) {
    return static_cast<std::size_t>(uniform() * static_cast<double>(count));
}

double Random::normal() {
    if (hasSpareNormal) {
        hasSpareNormal = false;
        return spareNormal;
    }
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * kPi * uniform();
    spareNormal = radius * std::sin(angle);
    hasSpareNormal = true;
    return radius * std::cos(angle);
}

Vec3 Random::normalVector() {
    // One by one: the order of evaluation inside one expression would be the compiler's.
    Vec3 result;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        result[axis] = normal();
    }
    return result;
}

Vec3 Random::direction() {
    Vec3 vector = normalVector();
    while (norm(vector) < 1e-6) {
        vector = normalVector();
    }
    return vector * (1.0 / norm(vector));
}

}  // namespace tavocal::simulator
