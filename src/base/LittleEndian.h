#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavocal {

// Little-endian numbers in byte vectors: the one pair of helpers through which blocks and firmware
// messages are read and written. REQUIRES: the field lies inside the vector; whoever takes bytes
// from outside has checked their length before.

std::uint16_t readU16(const std::vector<std::uint8_t>& bytes, std::size_t offset);
std::int16_t readI16(const std::vector<std::uint8_t>& bytes, std::size_t offset);
std::uint32_t readU32(const std::vector<std::uint8_t>& bytes, std::size_t offset);
std::int32_t readI32(const std::vector<std::uint8_t>& bytes, std::size_t offset);
std::uint64_t readU64(const std::vector<std::uint8_t>& bytes, std::size_t offset);

void writeU16(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint16_t value);
void writeU32(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint32_t value);

}  // namespace tavocal
