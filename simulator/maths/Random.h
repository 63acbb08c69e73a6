#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

// Random numbers of its own: the same seed and stream give the same numbers with every standard
// library. Each purpose takes a stream of its own name, so that one more draw for one purpose
// changes nothing for another. The generator is xoshiro256** (Blackman and Vigna), seeded by
// splitmix64.
class Random {
  public:
    Random(std::uint64_t seed, std::string_view stream);

    std::uint64_t next();
    // From 0.0, included, to 1.0, not included.
    double uniform();
    double uniform(double low, double high);
    // REQUIRES: count above 0.
    std::size_t below(std::size_t count);
    // Mean 0, standard deviation 1, by the method of Box and Muller.
    double normal();
    // Three independent normal numbers.
    Vec3 normalVector();
    // A unit vector, each direction being equally likely.
    Vec3 direction();

  private:
    std::array<std::uint64_t, 4> state{};
    double spareNormal = 0.0;
    bool hasSpareNormal = false;
};

}  // namespace tavocal::simulator
