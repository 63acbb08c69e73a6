#pragma once

#include <string>
#include <vector>

#include "vocabulary/RunTypes.h"

namespace tavocal {

// The texts of a motion run's stages.
struct MotionStages {
    int stageCount = 0;
    // Where the device shall end up; empty in the flows that are told by instructions alone.
    std::vector<std::string> stagePositions;
    // Flows without positions: one text per stage. Flows with positions: the turn that leads to the
    // next stage, one less than there are stages.
    std::vector<std::string> stageInstructions;
};

// `withMagnetometer`: a magnetometer is an indicator, so that the heading matters.
MotionStages motionStages(FlowType flow, bool withMagnetometer);

}  // namespace tavocal
