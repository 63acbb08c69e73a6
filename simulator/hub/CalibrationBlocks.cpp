#include "simulator/hub/CalibrationBlocks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "simulator/device/RawReading.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::simulator {

namespace {

constexpr std::size_t kStaticSize = 40;
constexpr std::size_t kVendorLengthAt = 38;
constexpr std::size_t kSmallestDynamic = 12;
constexpr std::size_t kLargestDynamic = 66;
constexpr std::size_t kGyroscopeDynamic = 71;
constexpr std::uint8_t kStaticFormat = 0;
constexpr std::uint8_t kDynamicFormat = 1;
constexpr std::uint8_t kGyroscopeDynamicFormat = 2;
constexpr std::uint8_t kLightFormat = 1;
// What leaves room in a message for the fields around the block.
constexpr std::size_t kLargestStored = 3900;

bool isDynamic(const LUID& luid) {
    return (luid.Flags & kDynamicFlag) != 0;
}

bool isLight(const LUID& luid) {
    return luid.SensorTypeId == kAmbientLightType;
}

bool fitsStatic(const ByteReader& block) {
    return block.u8(0) == kStaticFormat && block.has(0, kStaticSize) &&
           block.size() == kStaticSize + block.u16(kVendorLengthAt);
}

bool fitsDynamic(const LUID& luid, const ByteReader& block) {
    if (luid.SensorTypeId == kGyroscopeType) {
        return block.u8(0) == kGyroscopeDynamicFormat && block.size() == kGyroscopeDynamic;
    }
    return block.u8(0) == kDynamicFormat && block.size() >= kSmallestDynamic &&
           block.size() <= kLargestDynamic;
}

// At least three steps of four bytes; behind them nothing, or vendor data with its length.
bool fitsLight(const ByteReader& block) {
    constexpr std::size_t kStepCountAt = 5;
    constexpr std::size_t kStepsAt = 6;
    constexpr std::size_t kStepSize = 4;
    constexpr std::size_t kFewestSteps = 3;
    if (block.u8(0) != kLightFormat || !block.has(kStepCountAt, 1)) {
        return false;
    }
    const std::size_t steps = block.u8(kStepCountAt);
    const std::size_t end = kStepsAt + kStepSize * steps;
    return steps >= kFewestSteps &&
           (block.size() == end ||
            (block.has(end, 2) && block.size() == end + 2U + block.u16(end)));
}

// The axis mapping as nine fields of two bits: 01 for 1, 11 for -1.
std::uint32_t mappingWord(const Mat3& mapping) {
    std::uint32_t word = 0;
    for (unsigned k = 0; k < 9; ++k) {
        const double element = mapping.rows[k / 3][k % 3];
        word |= (element > 0.5 ? 1U : element < -0.5 ? 3U : 0U) << (2 * k);
    }
    return word;
}

double largestElement(const Mat3& m) {
    double largest = 0.0;
    for (const Vec3& row : m.rows) {
        largest = std::max({largest, std::abs(row.x), std::abs(row.y), std::abs(row.z)});
    }
    return largest;
}

void writeScale(ByteWriter& writer, const Mat3& scale) {
    const double factor = std::floor(32767.0 / std::max(1.0, largestElement(scale)));
    for (const Vec3& row : scale.rows) {
        for (std::size_t column = 0; column < 3; ++column) {
            const double element = std::round(row[column] * factor);
            writer.u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(element)));
        }
    }
    writer.u16(static_cast<std::uint16_t>(factor));
}

}  // namespace

bool fitsSensor(const LUID& luid, const Bytes& block) {
    if (block.empty() || block.size() > kLargestStored) {
        return false;
    }
    const ByteReader reader(block);
    if (reader.u8(0) >= kFirstVendorFormat) {
        return true;
    }
    return isLight(luid)     ? fitsLight(reader)
           : isDynamic(luid) ? fitsDynamic(luid, reader)
                             : fitsStatic(reader);
}

Bytes neutralBlock(const LUID& luid) {
    if (isLight(luid)) {
        return lightBlock(1.0);
    }
    constexpr std::uint32_t kIdentityWord = 0x00010101;
    ByteWriter writer;
    writer.u8(kStaticFormat).u8(0).zeros(12);
    for (unsigned k = 0; k < 9; ++k) {
        writer.u16(k % 4 == 0 ? 1 : 0);
    }
    return writer.u16(1).u32(kIdentityWord).u16(0).take();
}

Bytes blockFor(SensorKind kind, const SensorTruth& truth) {
    ByteWriter writer;
    writer.u8(kStaticFormat).u8(0);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        writer.i32(rawNumber(kind, truth.offset[axis]));
    }
    writeScale(writer, truth.scale);
    return writer.u32(mappingWord(truth.axisMapping)).u16(0).take();
}

// Behind the noise comes the firmware's own state, of which nobody else knows anything.
Bytes dynamicBlock(const LUID& luid) {
    const bool gyroscope = luid.SensorTypeId == kGyroscopeType;
    constexpr std::uint32_t kWhiteNoise = 1234;
    constexpr std::size_t kUsualSize = 32;
    const std::size_t size = gyroscope ? kGyroscopeDynamic : kUsualSize;
    ByteWriter writer;
    writer.u8(gyroscope ? kGyroscopeDynamicFormat : kDynamicFormat).u8(0).u32(kWhiteNoise);
    while (writer.size() < size) {
        writer.u8(static_cast<std::uint8_t>(0xA0 + writer.size()));
    }
    return writer.take();
}

Bytes lightBlock(double multiplier) {
    struct Step {
        std::uint16_t scale;
        std::uint16_t lux;
    };
    constexpr std::uint8_t kDivider = 100;
    constexpr std::array<Step, 4> kSteps = {{{60, 10}, {80, 100}, {100, 400}, {150, 2000}}};
    ByteWriter writer;
    writer.u8(kLightFormat).u8(0);
    writer.u16(static_cast<std::uint16_t>(std::round(multiplier * kDivider))).u8(kDivider);
    writer.u8(static_cast<std::uint8_t>(kSteps.size()));
    for (const Step& step : kSteps) {
        writer.u16(step.scale).u16(step.lux);
    }
    return writer.take();
}

}  // namespace tavocal::simulator
