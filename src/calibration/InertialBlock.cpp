#include "calibration/InertialBlock.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Failures.h"
#include "base/LittleEndian.h"
#include "log/ScopeLog.h"

namespace tavocal {

namespace {

// Positions in the body are those of the block less the head.
constexpr std::size_t body(std::size_t blockPosition) {
    return blockPosition - kBlockHeadSize;
}

// Cuts toward zero into the range of Integer; NaN gives 0.
template <typename Integer>
Integer cutTo(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    const auto lowest = static_cast<double>(std::numeric_limits<Integer>::min());
    const auto highest = static_cast<double>(std::numeric_limits<Integer>::max());
    return static_cast<Integer>(std::clamp(std::trunc(value), lowest, highest));
}

std::uint32_t mappingBits(double element) {
    if (element == 1.0) {
        return 1;
    }
    return element == -1.0 ? 3 : 0;
}

}  // namespace

FixedPointOffset convertOffset(const Vector& offset, Unit fromUnit, Unit toUnit) {
    TAVOCAL_SCOPE_STARTED("InertialSensor::convertOffset");
    FixedPointOffset result{};
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = cutTo<std::int32_t>(convertUnit(offset[static_cast<int>(i)], fromUnit, toUnit));
    }
    return result;
}

FixedPointScale convertScaling(const Matrix& matrix) {
    TAVOCAL_SCOPE_STARTED("InertialSensor::convertScaling");
    FixedPointScale result;
    Matrix scaled = matrix;
    if (!allIntegers(matrix)) {
        const double largest = largestMagnitude(flattened(matrix));
        const double divider = std::trunc(32767.0 / std::max(1.0, largest));
        scaled = matrix * divider;
        result.divider = cutTo<std::uint16_t>(divider);
    }
    for (std::size_t k = 0; k < result.elements.size(); ++k) {
        result.elements[k] =
            cutTo<std::int16_t>(scaled[static_cast<int>(k) / 3][static_cast<int>(k) % 3]);
    }
    return result;
}

std::uint32_t compressAxisMapping(const Matrix& matrix) {
    TAVOCAL_SCOPE_STARTED("InertialSensor::compressAxisMapping");
    if (!is3x3(matrix)) {
        throw MathException("Error from compressAxisMapping, expected a 3X3 matrix");
    }
    std::uint32_t word = 0;
    for (int k = 0; k < 9; ++k) {
        word |= mappingBits(matrix[k / 3][k % 3]) << (2 * k);
    }
    return word;
}

Matrix expandAxisMapping(std::uint32_t word) {
    static constexpr std::array<double, 4> kElements = {0.0, 1.0, -2.0, -1.0};
    Matrix matrix(3, 3);
    for (int k = 0; k < 9; ++k) {
        matrix[k / 3][k % 3] = kElements[(word >> (2 * k)) & 3];
    }
    return matrix;
}

StaticBlockFields decodeStaticBlock(const CalibrationBlock& block) {
    StaticBlockFields fields{Vector(3), Matrix(3, 3), Matrix(3, 3)};
    for (int i = 0; i < 3; ++i) {
        fields.offset[i] = readI32(block, kOffsetPosition + 4 * static_cast<std::size_t>(i));
    }
    for (int k = 0; k < 9; ++k) {
        fields.scale[k / 3][k % 3] =
            readI16(block, kScalePosition + 2 * static_cast<std::size_t>(k));
    }
    const std::uint16_t scaleFactor = readU16(block, kScaleFactorPosition);
    if (scaleFactor != 0) {
        fields.scale = fields.scale / scaleFactor;
    }
    fields.axisMapping = expandAxisMapping(readU32(block, kAxisMappingPosition));
    return fields;
}

void storeOffset(CalibrationBlock& block, const FixedPointOffset& offset) {
    for (std::size_t i = 0; i < offset.size(); ++i) {
        writeU32(block, kOffsetPosition + 4 * i, static_cast<std::uint32_t>(offset[i]));
    }
}

CalibrationBlock staticBody(const FixedPointOffset& offset, const FixedPointScale& scale,
                            std::uint32_t axisMapping) {
    CalibrationBlock result(kStaticBodySize, 0);
    for (std::size_t i = 0; i < offset.size(); ++i) {
        writeU32(result, body(kOffsetPosition) + 4 * i, static_cast<std::uint32_t>(offset[i]));
    }
    for (std::size_t k = 0; k < scale.elements.size(); ++k) {
        writeU16(result, body(kScalePosition) + 2 * k,
                 static_cast<std::uint16_t>(scale.elements[k]));
    }
    writeU16(result, body(kScaleFactorPosition), scale.divider);
    writeU32(result, body(kAxisMappingPosition), axisMapping);
    return result;
}

CalibrationBlock addVendorData(CalibrationBlock result, const CalibrationBlock& original) {
    const ScopeLog scopeLog(__LINE__, "InertialSensor::addOriginalVendorData",
                            "InertialSensor::addVendorData", "Started");
    if (original.size() < kVendorDataPosition) {
        return result;
    }
    const std::size_t length = readU16(original, kVendorLengthPosition);
    if (original.size() < kVendorDataPosition + length) {
        return result;
    }
    writeU16(result, body(kVendorLengthPosition), static_cast<std::uint16_t>(length));
    const auto first = original.begin() + static_cast<std::ptrdiff_t>(kVendorDataPosition);
    result.insert(result.end(), first, first + static_cast<std::ptrdiff_t>(length));
    return result;
}

CalibrationBlock withWhiteNoise(CalibrationBlock block, double value) {
    if (block.size() < kWhiteNoisePosition + sizeof(std::uint32_t)) {
        throw CalibrationException("Invalid calibration data size");
    }
    writeU32(block, kWhiteNoisePosition, cutTo<std::uint32_t>(value));
    return block;
}

}  // namespace tavocal
