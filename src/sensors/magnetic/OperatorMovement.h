#pragma once

#include <vector>

#include "numerics/Sample.h"
#include "vocabulary/Judgement.h"

namespace tavocal {

// Whether the readings of a magnetometer show that the operator moved the device as told, so that a
// bad result means a bad place and not a bad movement. The judgements log their numbers under the
// names of the Magnetometer's operations. Fields in milliGauss.
struct OperatorMovement {
    Judgement extent;   // moved far enough, and not too far
    Judgement wayBack;  // ended near its begin; `measured` holds the difference of each element

    bool followed() const { return extent.passed && wayBack.passed; }
    // The axis of a rotation: the one along which the field changed least.
    int axis() const;
};

// One full turn about one axis. REQUIRES: a sample.
OperatorMovement judgeRotation(const std::vector<Sample>& rotation);

// A walk that ends near its begin, but not in it.
OperatorMovement judgeWalk(const Sample& first, const Sample& last);

}  // namespace tavocal
