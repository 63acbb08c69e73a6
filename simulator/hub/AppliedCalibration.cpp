#include "simulator/hub/AppliedCalibration.h"

#include <algorithm>
#include <limits>

#include "simulator/hub/CalibrationBlocks.h"

namespace tavocal::simulator {

namespace {

constexpr std::size_t kOffsetAt = 2;
constexpr std::size_t kScaleAt = 14;
constexpr std::size_t kScaleFactorAt = 32;
constexpr std::size_t kMappingAt = 34;
constexpr std::size_t kMultiplierAt = 2;
constexpr std::size_t kDividerAt = 4;

// Two bits as a signed number.
std::int64_t mappingElement(std::uint32_t word, std::size_t k) {
    const auto bits = static_cast<std::int64_t>((word >> (2 * k)) & 3U);
    return bits < 2 ? bits : bits - 4;
}

// Rounded, halves away from zero.
std::int64_t divided(std::int64_t number, std::int64_t divider) {
    const std::int64_t half = number < 0 ? -(divider / 2) : divider / 2;
    return (number + half) / divider;
}

std::int32_t saturated(std::int64_t number) {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(number, std::numeric_limits<std::int32_t>::min(),
                                 std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

AppliedCalibration::AppliedCalibration(SensorKind kind, const Bytes& block) {
    if (block.empty() || block[0] >= kFirstVendorFormat) {
        return;
    }
    if (kind == SensorKind::AmbientLight) {
        readLight(block);
    } else {
        readMotion(block);
    }
}

void AppliedCalibration::readMotion(const Bytes& block) {
    const ByteReader reader(block);
    const std::uint32_t word = reader.u32(kMappingAt);
    std::array<std::int64_t, 9> scale{};
    for (std::size_t k = 0; k < scale.size(); ++k) {
        scale[k] = static_cast<std::int16_t>(reader.u16(kScaleAt + 2 * k));
    }
    for (std::size_t k = 0; k < matrix.size(); ++k) {
        matrix[k] = 0;
        for (std::size_t inner = 0; inner < 3; ++inner) {
            matrix[k] += scale[k / 3 * 3 + inner] * mappingElement(word, 3 * inner + k % 3);
        }
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        offset[axis] = reader.i32(kOffsetAt + 4 * axis);
    }
    divider = std::max<std::int64_t>(reader.u16(kScaleFactorAt), 1);
}

// A multiplier of 0 has never been set.
void AppliedCalibration::readLight(const Bytes& block) {
    const ByteReader reader(block);
    if (reader.u16(kMultiplierAt) != 0) {
        matrix[0] = reader.u16(kMultiplierAt);
        divider = std::max<std::int64_t>(reader.u8(kDividerAt), 1);
    }
}

RawReading AppliedCalibration::apply(const RawReading& reading) const {
    RawReading result = reading;
    for (std::size_t row = 0; row < reading.count; ++row) {
        std::int64_t sum = 0;
        for (std::size_t column = 0; column < reading.count; ++column) {
            sum += matrix[3 * row + column] * (reading.values[column] - offset[column]);
        }
        result.values[row] = saturated(divided(sum, divider));
    }
    return result;
}

}  // namespace tavocal::simulator
