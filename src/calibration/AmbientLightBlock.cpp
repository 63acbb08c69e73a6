#include "calibration/AmbientLightBlock.h"

#include <utility>

#include "base/Bytes.h"
#include "base/Failures.h"

namespace tavocal {

namespace {

void requireSize(bool good) {
    if (!good) {
        throw CalibrationException("Invalid Ambient Light Sensor calibration data size");
    }
}

void storeScale(CalibrationBlock& bytes, std::size_t position, LightScale scale) {
    writeU16(bytes, position, scale.multiplier);
    bytes[position + 2] = scale.divider;
}

// `base` is where the steps end.
bool endsAt(const CalibrationBlock& block, std::size_t base) {
    if (block.size() < base + 2) {
        return block.size() == base;
    }
    return block.size() == base + 2 + ByteReader(block).u16(base);
}

}  // namespace

LightScale lightScaleOf(const CalibrationBlock& block) {
    requireSize(block.size() > kLightDividerPosition);
    return {ByteReader(block).u16(kLightMultiplierPosition), block[kLightDividerPosition]};
}

CalibrationBlock withLightScale(CalibrationBlock block, LightScale scale) {
    requireSize(block.size() > kLightDividerPosition);
    storeScale(block, kLightMultiplierPosition, scale);
    return block;
}

CalibrationBlock newLightBody(LightScale scale) {
    CalibrationBlock body(kLightBlockSize - kBlockHeadSize, 0);
    storeScale(body, kLightMultiplierPosition - kBlockHeadSize, scale);
    body[kLightStepCountPosition - kBlockHeadSize] = 1;
    return body;
}

std::size_t lightStepCount(const CalibrationBlock& block) {
    const std::size_t steps = block[kLightStepCountPosition];
    if (steps < kFewestLightSteps) {
        throw CalibrationException(
            "Invalid Ambient Light Sensor calibration data: not enough ALR steps");
    }
    return steps;
}

void validateLightSteps(const CalibrationBlock& block) {
    requireSize(block.size() >= kSmallestLightBlock);
    requireSize(endsAt(block, endOfLightSteps(lightStepCount(block))));
}

}  // namespace tavocal
