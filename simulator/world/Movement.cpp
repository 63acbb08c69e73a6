#include "simulator/world/Movement.h"

#include <algorithm>

namespace tavocal::simulator {

double Movement::progress(double seconds) const {
    const double t = std::clamp((seconds - begin) / duration, 0.0, 1.0);
    return t * t * t * (10.0 + t * (-15.0 + t * 6.0));
}

double Movement::liveliness(double seconds) const {
    const double t = std::clamp((seconds - begin) / duration, 0.0, 1.0);
    const double hump = 4.0 * t * (1.0 - t);
    return hump * hump * hump;
}

Quaternion Movement::rotation(double seconds) const {
    const double done = progress(seconds);
    return fromRotationVector(turn * done) * fromRotationVector(correction * done);
}

}  // namespace tavocal::simulator
