#pragma once

#include <array>
#include <cstdint>

#include "calibration/CalibrationBlock.h"
#include "numerics/Matrix.h"
#include "numerics/Vector.h"
#include "vocabulary/Unit.h"

// The firmware's calibration block of an inertial sensor: a wire format, little-endian, without
// padding.
//
// Static block (FormatId 0), 40 bytes and the vendor data:
//    0  u8      FormatId
//    1  u8      Version
//    2  3 x i32 offset, in the sensor's firmwareUnit
//   14  9 x i16 scale matrix, row by row
//   32  u16     ScaleFactor, the divider of the scale matrix; 0 is read as 1
//   34  u32     axis mapping: element k (row k / 3, column k % 3) in bits 2k and 2k + 1, as a
//               signed 2-bit number; bits 18 to 31 are 0
//   38  u16     length of the vendor data
//   40          vendor data
//
// Dynamic block: FormatId and Version, then at 2 a u32 white noise in firmwareUnit; the rest is the
// firmware's own state, which is only carried along.
namespace tavocal {

constexpr std::size_t kStaticBlockSize = 40;
constexpr std::size_t kStaticBodySize = kStaticBlockSize - kBlockHeadSize;

// Offsets in the whole block.
constexpr std::size_t kOffsetPosition = 2;
constexpr std::size_t kScalePosition = 14;
constexpr std::size_t kScaleFactorPosition = 32;
constexpr std::size_t kAxisMappingPosition = 34;
constexpr std::size_t kVendorLengthPosition = 38;
constexpr std::size_t kVendorDataPosition = 40;
constexpr std::size_t kWhiteNoisePosition = 2;

struct FixedPointScale {
    std::array<std::int16_t, 9> elements{};  // row by row
    std::uint16_t divider = 1;
};

using FixedPointOffset = std::array<std::int32_t, 3>;

// Each element converted and cut toward zero. An element that doesn't fit takes the nearest limit,
// NaN gives 0.
FixedPointOffset convertOffset(const Vector& offset, Unit fromUnit, Unit toUnit);

// Fixed point with the divider that uses the whole range of 16 bits; a matrix of integers keeps
// the divider 1. The cut loses at most 1 / divider of each element. REQUIRES: 3 by 3.
FixedPointScale convertScaling(const Matrix& matrix);

// 1 and -1 are kept, any other value is 0. Throws MathException unless 3 by 3.
std::uint32_t compressAxisMapping(const Matrix& matrix);
// The 3 by 3 matrix of a mapping word; the bit pair 10 gives -2.
Matrix expandAxisMapping(std::uint32_t word);

// A static block taken apart, as doubles.
struct StaticBlockFields {
    Vector offset;  // in firmwareUnit
    Matrix scale;   // divided by ScaleFactor
    Matrix axisMapping;
};
// REQUIRES: at least kStaticBlockSize bytes.
StaticBlockFields decodeStaticBlock(const CalibrationBlock& block);

void storeOffset(CalibrationBlock& block, const FixedPointOffset& offset);

// The 38-byte body of a static block without vendor data.
CalibrationBlock staticBody(const FixedPointOffset& offset, const FixedPointScale& scale,
                            std::uint32_t axisMapping);

// The body with the vendor data of `original`, which may be empty or too short to hold any.
CalibrationBlock addVendorData(CalibrationBlock body, const CalibrationBlock& original);

// `block` with its white noise replaced by `value`, cut to an unsigned 32-bit number. Throws
// CalibrationException "Invalid calibration data size" if the block has no room for one.
CalibrationBlock withWhiteNoise(CalibrationBlock block, double value);

}  // namespace tavocal
