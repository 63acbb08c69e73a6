#include "vocabulary/Unit.h"

#include <algorithm>
#include <array>

#include "base/Failures.h"
#include "numerics/Rotations.h"

namespace tavocal {

namespace {

constexpr double kGravity = 9.80665;  // metres per second squared

enum class Family { None, Acceleration, Angle, Magnetic };

struct UnitRow {
    Unit unit;
    std::string_view text;
    Family family;
    double (*toBase)(double);
    double (*fromBase)(double);
};

double same(double v) {
    return v;
}

double degreeToRadian(double v) {
    return v * kPi / 180;
}

double radianToDegree(double v) {
    return v * 180 / kPi;
}

// The bases are metre per second squared, radian and milligauss. The operations stand in the
// order in which they are done: another order rounds differently.
constexpr std::array<UnitRow, 17> kUnits = {{
    {Unit::unknown, "unknown", Family::None, same, same},
    {Unit::meterPerSec2, "meter__sec2", Family::Acceleration, same, same},
    {Unit::g0, "g0", Family::Acceleration, [](double v) { return v * kGravity; },
     [](double v) { return v / kGravity; }},
    {Unit::mg0, "mg0", Family::Acceleration, [](double v) { return v * kGravity / 1000; },
     [](double v) { return v * 1000 / kGravity; }},
    {Unit::microg0, "microg0", Family::Acceleration,
     [](double v) { return v * kGravity / 1000000; },
     [](double v) { return v * 1000000 / kGravity; }},
    {Unit::meterPerSec, "meter__sec", Family::None, same, same},
    {Unit::radian, "radian", Family::Angle, same, same},
    {Unit::degree, "degree", Family::Angle, degreeToRadian, radianToDegree},
    {Unit::radPerSec, "rad__sec", Family::Angle, same, same},
    {Unit::degPerSec, "deg__sec", Family::Angle, degreeToRadian, radianToDegree},
    {Unit::mdegPerSec, "mdeg__sec", Family::Angle,
     [](double v) { return degreeToRadian(v) / 1000; },
     [](double v) { return radianToDegree(v) * 1000; }},
    {Unit::degPerSec5, "deg_sec_5", Family::Angle,
     [](double v) { return degreeToRadian(v) / 100000; },
     [](double v) { return radianToDegree(v) * 100000; }},
    {Unit::tesla, "tesla", Family::None, same, same},
    {Unit::microTesla, "microTesla", Family::Magnetic, [](double v) { return v * 10; },
     [](double v) { return v * 0.1; }},
    {Unit::milliGauss, "milliGauss", Family::Magnetic, same, same},
    {Unit::microGauss, "microGauss", Family::Magnetic, [](double v) { return v / 1000; },
     [](double v) { return v * 1000; }},
    {Unit::lux, "lux", Family::None, same, same},
}};

// Null if no row fits.
template <typename Predicate>
const UnitRow* findRow(Predicate fits) {
    const auto* const found = std::find_if(kUnits.begin(), kUnits.end(), fits);
    return found == kUnits.end() ? nullptr : found;
}

const UnitRow* findUnit(Unit unit) {
    return findRow([unit](const UnitRow& row) { return row.unit == unit; });
}

}  // namespace

std::string unitToText(Unit unit) {
    const UnitRow* const row = findUnit(unit);
    if (row == nullptr) {
        throw MathException("Unsupported unit");
    }
    return std::string(row->text);
}

Unit textToUnit(std::string_view text) {
    const UnitRow* const row = findRow([text](const UnitRow& r) { return r.text == text; });
    if (row == nullptr) {
        throw MathException("Unsupported unit");
    }
    return row->unit;
}

double convertUnit(double value, Unit from, Unit to) {
    const UnitRow* const source = findUnit(from);
    const UnitRow* const target = findUnit(to);
    if (source == nullptr || target == nullptr || source->family != target->family ||
        source->family == Family::None) {
        return 0.0;
    }
    return target->fromBase(source->toBase(value));
}

}  // namespace tavocal
