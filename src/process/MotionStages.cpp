#include "process/MotionStages.h"

namespace tavocal {

namespace {

const std::vector<std::string>& fullInstructions() {
    static const auto* const texts = new std::vector<std::string>{
        "Z axis directed UP, Y axis directed to North",
        "360 degrees counterclockwise around Z axis",
        "Y axis directed UP, Z axis directed to South",
        "360 degrees counterclockwise around Y axis",
        "X axis directed UP, Z axis directed to South",
        "360 degrees counterclockwise around X axis",
        "Y axis directed DOWN, Z axis directed to South",
    };
    return *texts;
}

MotionStages fullStages() {
    return {7, {}, fullInstructions()};
}

// The positions of the Full flow, without the turns between them.
MotionStages accelerometerOnlyStages() {
    const std::vector<std::string>& full = fullInstructions();
    return {4, {}, {full[0], full[2], full[4], full[6]}};
}

MotionStages fourStepsStages() {
    return {4,
            {"Z axis directed UP", "X axis directed DOWN", "Y axis directed UP",
             "Z axis is directed UP; device turned 90 degrees vs. initial state"},
            {"90 degrees counterclockwise around Y axis",
             "90 degrees counterclockwise around Z axis", "90 degrees clockwise around X axis"}};
}

MotionStages magAccuracyStages() {
    const std::string quarterTurn = "90 degrees counterclockwise around Z axis";
    return {4,
            {"Z axis directed UP, Y axis directed to North",
             "Z axis directed UP, Y axis directed to West",
             "Z axis directed UP, Y axis directed to South",
             "Z axis directed UP, Y axis directed to East"},
            {quarterTurn, quarterTurn, quarterTurn}};
}

MotionStages minimalStages(bool withMagnetometer) {
    return {
        1,
        {withMagnetometer ? "Z axis directed UP, Y axis directed to North" : "Z axis directed UP"},
        {}};
}

}  // namespace

MotionStages motionStages(FlowType flow, bool withMagnetometer) {
    switch (flow) {
        case FlowType::Minimal:
            return minimalStages(withMagnetometer);
        case FlowType::FourSteps:
            return fourStepsStages();
        case FlowType::MagAccuracyTest:
            return magAccuracyStages();
        case FlowType::AccelerometerOnly:
            return accelerometerOnlyStages();
        case FlowType::Full:
            break;
    }
    return fullStages();
}

}  // namespace tavocal
