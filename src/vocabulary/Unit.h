#pragma once

#include <string>
#include <string_view>

namespace tavocal {

// The physical units of the system. The values are fixed and have gaps.
enum class Unit {
    unknown = 0,
    meterPerSec2 = 1,
    g0 = 2,       // standard gravity
    mg0 = 3,      // thousandths of g
    microg0 = 4,  // millionths of g
    meterPerSec = 5,
    radian = 10,
    degree = 11,
    radPerSec = 12,
    degPerSec = 13,
    mdegPerSec = 14,  // thousandths of a degree per second
    degPerSec5 = 15,  // 1/100000 of a degree per second
    tesla = 16,
    microTesla = 17,
    milliGauss = 18,
    microGauss = 19,
    lux = 20,
};

// The name of a unit in files. Throws MathException "Unsupported unit" for a value that the
// enumeration doesn't list.
std::string unitToText(Unit unit);

// The unit of a name, which is case-sensitive. Throws MathException "Unsupported unit".
Unit textToUnit(std::string_view text);

// Converts within one family: acceleration, magnetic field, or angle, which makes no difference
// between an angle and its rate. Units of different families, or of none, give 0.0. Goes through
// the family's base unit also if both units are the same, so that may round.
double convertUnit(double value, Unit from, Unit to);

}  // namespace tavocal
