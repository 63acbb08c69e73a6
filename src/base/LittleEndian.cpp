#include "base/LittleEndian.h"

namespace tavocal {

namespace {

std::uint64_t readLittleEndian(const std::vector<std::uint8_t>& bytes, std::size_t offset,
                               std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = width; i > 0; --i) {
        value = (value << 8) | bytes.at(offset + i - 1);
    }
    return value;
}

void writeLittleEndian(std::vector<std::uint8_t>& bytes, std::size_t offset, std::size_t width,
                       std::uint64_t value) {
    for (std::size_t i = 0; i < width; ++i) {
        bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

}  // namespace

std::uint16_t readU16(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(readLittleEndian(bytes, offset, 2));
}

std::int16_t readI16(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return static_cast<std::int16_t>(readU16(bytes, offset));
}

std::uint32_t readU32(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(readLittleEndian(bytes, offset, 4));
}

std::int32_t readI32(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return static_cast<std::int32_t>(readU32(bytes, offset));
}

std::uint64_t readU64(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return readLittleEndian(bytes, offset, 8);
}

void writeU16(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint16_t value) {
    writeLittleEndian(bytes, offset, 2, value);
}

void writeU32(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint32_t value) {
    writeLittleEndian(bytes, offset, 4, value);
}

}  // namespace tavocal
