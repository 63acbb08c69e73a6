#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "simulator/maths/Vec3.h"

namespace tavocal::simulator {

// A dipole: iron in a desk, a loudspeaker, a magnet that somebody puts down and takes away again.
struct Magnet {
    Vec3 position;                                            // metres, world frame
    Vec3 moment;                                              // ampere square metres, world frame
    double begin = -std::numeric_limits<double>::infinity();  // seconds
    double end = std::numeric_limits<double>::infinity();
};

// The magnetic field in milligauss, in the world's frame East-North-Up: the earth's, which is the
// same everywhere, and that of magnets. One thread at a time.
class MagneticField {
  public:
    // The earth's field points north and, with a positive dip, down.
    MagneticField(double strengthMg, double dipDegrees);

    Vec3 at(const Vec3& position, double seconds) const;

    // A magnet comes and goes within kFadeSeconds. The result names it.
    std::size_t addMagnet(const Magnet& magnet);
    // Takes a magnet away, from `seconds` on.
    void removeMagnet(std::size_t index, double seconds);

    static constexpr double kFadeSeconds = 0.4;

  private:
    Vec3 earth;
    std::vector<Magnet> magnets;
};

}  // namespace tavocal::simulator
