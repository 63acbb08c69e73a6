#include "simulator/world/MagneticField.h"

#include <algorithm>
#include <cmath>

namespace tavocal::simulator {

namespace {

// mu0 / 4 pi, with the field in milligauss: 1e-7 T m/A, and a tesla is 1e7 milligauss.
constexpr double kDipoleFactor = 1.0;
// Nearer than this to a dipole its formula means nothing any more.
constexpr double kNearest = 0.02;

// Rises smoothly from 0 to 1 between 0 and 1.
double smoothStep(double t) {
    t = std::clamp(t, 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

double presence(const Magnet& magnet, double seconds) {
    return smoothStep((seconds - magnet.begin) / MagneticField::kFadeSeconds) *
           smoothStep((magnet.end - seconds) / MagneticField::kFadeSeconds);
}

// B = mu0 / 4 pi (3 (m . n) n - m) / r^3 with n the unit vector to the point (Jackson, Classical
// Electrodynamics, 5.6).
Vec3 dipoleField(const Magnet& magnet, const Vec3& position) {
    const Vec3 way = position - magnet.position;
    const double length = norm(way);
    const double r = std::max(length, kNearest);
    const Vec3 n = length > 0.0 ? way * (1.0 / length) : Vec3{0.0, 0.0, 1.0};
    return (3.0 * dot(magnet.moment, n) * n - magnet.moment) * (kDipoleFactor / (r * r * r));
}

}  // namespace

MagneticField::MagneticField(double strengthMg, double dipDegrees) {
    const double dip = dipDegrees * kRadiansPerDegree;
    earth = {0.0, strengthMg * std::cos(dip), -strengthMg * std::sin(dip)};
}

Vec3 MagneticField::at(const Vec3& position, double seconds) const {
    Vec3 field = earth;
    for (const Magnet& magnet : magnets) {
        const double share = presence(magnet, seconds);
        if (share > 0.0) {
            field += dipoleField(magnet, position) * share;
        }
    }
    return field;
}

std::size_t MagneticField::addMagnet(const Magnet& magnet) {
    magnets.push_back(magnet);
    return magnets.size() - 1;
}

void MagneticField::removeMagnet(std::size_t index, double seconds) {
    magnets[index].end = seconds + kFadeSeconds;
}

}  // namespace tavocal::simulator
