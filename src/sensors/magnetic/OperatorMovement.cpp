#include "sensors/magnetic/OperatorMovement.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "base/Text.h"
#include "log/Logger.h"
#include "sensors/model/SampleWindows.h"

namespace tavocal {

namespace {

constexpr double kMagMotionThres_rotation = 400.0;
constexpr double kBeginEndDifferenceThres_rotation = 100.0;
constexpr double kMagMovementThres_testPhase_min = 10.0;
constexpr double kMagMovementThres_testPhase_max = 40.0;
constexpr double kBeginEndDifferenceThres_testPhase = 100.0;

// NaN for an axis with a value that is not finite.
Vector axisRanges(const std::vector<Sample>& samples) {
    Vector ranges(3);
    for (int axis = 0; axis < 3; ++axis) {
        ranges[axis] = finiteAxisRange(samples, {0, static_cast<int>(samples.size()) - 1}, axis);
    }
    return ranges;
}

// NaN if any value is.
double largestOf(const Vector& values) {
    double largest = values[0];
    for (const double value : values) {
        if (value > largest || std::isnan(value)) {
            largest = value;
        }
    }
    return largest;
}

// The first of equals; 0 if there is no number.
int indexOfSmallest(const Vector& values) {
    int index = 0;
    double smallest = std::numeric_limits<double>::max();
    for (int i = 0; i < values.size(); ++i) {
        if (values[i] < smallest) {
            smallest = values[i];
            index = i;
        }
    }
    return index;
}

std::string listText(const Vector& values) {
    return fixedText(values[0]) + ",\n" + fixedText(values[1]) + ",\n" + fixedText(values[2]);
}

// A NaN is not below.
Judgement judgeWayBack(const Vector& change, double limit) {
    const Vector difference = absValues(change);
    Judgement judgement =
        refusedAbove("distance of begin and end", largestOf(difference), limit, difference);
    judgement.unit = Unit::milliGauss;
    judgement.passed = std::all_of(difference.begin(), difference.end(),
                                   [limit](double value) { return value < limit; });
    return judgement;
}

}  // namespace

int OperatorMovement::axis() const {
    return indexOfSmallest(extent.measured);
}

OperatorMovement judgeRotation(const std::vector<Sample>& rotation) {
    constexpr const char* kName = "Magnetometer::checkMagPreTest_singleRotation";
    const Vector range = axisRanges(rotation);
    const double largest = largestOf(range);
    OperatorMovement movement;
    movement.extent =
        refusedBelow("change of the field in the rotation", largest, kMagMotionThres_rotation);
    movement.extent.unit = Unit::milliGauss;
    movement.extent.measured = range;
    movement.extent.passed = std::isfinite(largest) && largest > kMagMotionThres_rotation;
    movement.wayBack = judgeWayBack(rotation.front().values - rotation.back().values,
                                    kBeginEndDifferenceThres_rotation);
    TAVOCAL_LOG(Info, kName, "===== checkMagPreTest_singleRotation =====");
    TAVOCAL_LOG(Info, kName, "range.Max(): " + fixedText(largest));
    TAVOCAL_LOG(Info, kName, "magMotionThres_rotation: " + fixedText(kMagMotionThres_rotation));
    TAVOCAL_LOG(Info, kName, "difference: " + listText(movement.wayBack.measured));
    TAVOCAL_LOG(
        Info, kName,
        "beginEndDifferenceThres_rotation: " + fixedText(kBeginEndDifferenceThres_rotation));
    return movement;
}

OperatorMovement judgeWalk(const Sample& first, const Sample& last) {
    constexpr const char* kName = "Magnetometer::checkMagPreTest_translation";
    const Vector change = last.values - first.values;
    const double d = norm(change);
    OperatorMovement movement;
    movement.extent =
        acceptedWithin("change of the field in the walk", d, kMagMovementThres_testPhase_min,
                       kMagMovementThres_testPhase_max);
    movement.extent.unit = Unit::milliGauss;
    movement.extent.passed =
        d > kMagMovementThres_testPhase_min && d < kMagMovementThres_testPhase_max;
    movement.wayBack = judgeWayBack(change, kBeginEndDifferenceThres_testPhase);
    TAVOCAL_LOG(Info, kName, "===== checkMagPreTest_translation =====");
    TAVOCAL_LOG(Info, kName, "(currentPoint - LastData).norm(): " + fixedText(d));
    TAVOCAL_LOG(Info, kName,
                "magMovementThres_testPhase_min: " + fixedText(kMagMovementThres_testPhase_min));
    TAVOCAL_LOG(Info, kName,
                "magMovementThres_testPhase_max: " + fixedText(kMagMovementThres_testPhase_max));
    TAVOCAL_LOG(Info, kName, "difference: " + listText(movement.wayBack.measured));
    TAVOCAL_LOG(
        Info, kName,
        "beginEndDifferenceThres_testPhase: " + fixedText(kBeginEndDifferenceThres_testPhase));
    return movement;
}

}  // namespace tavocal
