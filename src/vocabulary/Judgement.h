#pragma once

#include <limits>
#include <string>

#include "numerics/Vector.h"
#include "vocabulary/Unit.h"

namespace tavocal {

// One thing that a run judged: what was measured, what it had to be, and the verdict. Quality
// gates, tests, cross-sensor checks and the test of the magnetic environment make one for each of
// their checks, passed or failed, in the order in which they judge. Reports, failure texts and
// console lines are written from it; the run keeps the list.
struct Judgement {
    // Who was judged, by display name; for a pair also who it was held against.
    std::string sensor;
    std::string other;
    // What judged: "Calibration", or the name that a test has in the report.
    std::string check;
    // The stage, motion or light level, counted from 0.
    static constexpr int kWholeRun = -1;
    int stage = kWholeRun;

    // What was judged. `value` is the number that the limits bound, in `unit`, which is unknown
    // for a ratio or a count. `measured` is what it was taken from, if that is more than itself,
    // and `expected` what a perfect sensor would have given.
    std::string quantity;
    Unit unit = Unit::unknown;
    Vector measured;
    Vector expected;
    double value = 0.0;
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();

    // The check's own verdict, which can pass a value that is no number: a gate refuses one in a
    // check of its own, "numbers that are not finite".
    bool passed = true;

    // What the report calls it: the element of what was measured, or the "FailureParameter".
    std::string parameter;
    // What a failure tells the operator. Empty where a failure prints its numbers.
    std::string reason;
};

// Judgements of `quantity`, with their verdict. The first three fail for a value beyond its limits,
// and so pass one that is no number; the others pass a value within them, and so fail it.
Judgement refusedAbove(const std::string& quantity, double value, double highest,
                       const Vector& measured = {});
Judgement refusedBelow(const std::string& quantity, double value, double lowest);
Judgement refusedOutside(const std::string& quantity, double value, double lowest, double highest,
                         const Vector& measured);
Judgement acceptedUpTo(const std::string& quantity, double value, double highest);
Judgement acceptedWithin(const std::string& quantity, double value, double lowest, double highest);

// The room that a value leaves to the nearer limit, as a part of half of the room between both, or
// of the limit itself where there is one: 0 at the limit, below 0 beyond it. NaN if the numbers
// don't tell.
double marginOf(const Judgement& judgement);

// Passed, but with less than a tenth of the room left.
bool isMarginal(const Judgement& judgement);

}  // namespace tavocal
