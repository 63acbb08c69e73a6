#pragma once

namespace tavocal::test {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kDegree = kPi / 180.0;  // in radians

}  // namespace tavocal::test
