#pragma once

#include <cstddef>
#include <cstdint>

#include "calibration/CalibrationBlock.h"

// The firmware's calibration block of an ambient light sensor: a wire format, little-endian,
// without padding.
//    0  u8      FormatId, 1
//    1  u8      Version
//    2  u16     Multiplier
//    4  u8      Divider; 0 is read as 1
//    5  u8      NumOfSteps
//    6          NumOfSteps times u16 Scale, u16 Lux
//  then, unless the block ends here,
//       u16     DataLength
//               DataLength bytes of vendor data
//
// The steps and the vendor data are the firmware's own: calibration only carries them along.
namespace tavocal {

constexpr std::uint8_t kLightFormatId = 1;
constexpr std::size_t kLightMultiplierPosition = 2;
constexpr std::size_t kLightDividerPosition = 4;
constexpr std::size_t kLightStepCountPosition = 5;
constexpr std::size_t kLightStepsPosition = 6;
constexpr std::size_t kLightStepSize = 4;
constexpr int kFewestLightSteps = 3;
constexpr int kMostLightSteps = 15;  // what a block that is made here has room for

// Where so many steps end.
constexpr std::size_t endOfLightSteps(std::size_t steps) {
    return kLightStepsPosition + kLightStepSize * steps;
}

constexpr std::size_t kSmallestLightBlock = endOfLightSteps(kFewestLightSteps);
constexpr std::size_t kLightBlockSize = endOfLightSteps(kMostLightSteps);

// A reading times multiplier / divider is in lux.
struct LightScale {
    std::uint16_t multiplier = 0;
    std::uint8_t divider = 0;
};

// Both throw CalibrationException "Invalid Ambient Light Sensor calibration data size" for a block
// that is too short to hold a scale, as one in a vendor's own format may be.
LightScale lightScaleOf(const CalibrationBlock& block);
CalibrationBlock withLightScale(CalibrationBlock block, LightScale scale);

// A new block without its head of FormatId and Version: one step, which is zero like the room for
// the others. The firmware would not take so few steps, so it is good for files only.
CalibrationBlock newLightBody(LightScale scale);

// NumOfSteps. Throws CalibrationException if those are too few. REQUIRES: a block that has the
// field.
std::size_t lightStepCount(const CalibrationBlock& block);

// Throws CalibrationException unless there are enough steps, and the block ends behind them or
// behind its vendor data. FormatId is not looked at.
void validateLightSteps(const CalibrationBlock& block);

}  // namespace tavocal
