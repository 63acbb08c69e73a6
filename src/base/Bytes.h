#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tavocal {

using Bytes = std::vector<std::uint8_t>;

// Little-endian numbers in messages and blocks: the one place that knows the order of their bytes.
// ByteReader reads them, ByteWriter appends them, writeU16 and writeU32 replace them.

// Numbers at fixed places of a message or block that came from outside. A place that does not lie
// wholly within the bytes throws std::out_of_range. The bytes must outlive the reader.
class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> source) : bytes(source) {}

    std::size_t size() const { return bytes.size(); }
    // Free of overflow, whatever the two numbers are.
    bool has(std::size_t offset, std::size_t count) const {
        return offset <= bytes.size() && count <= bytes.size() - offset;
    }

    std::uint8_t u8(std::size_t offset) const { return slice(offset, 1)[0]; }
    std::uint16_t u16(std::size_t offset) const { return number<std::uint16_t>(offset); }
    std::uint32_t u32(std::size_t offset) const { return number<std::uint32_t>(offset); }
    std::uint64_t u64(std::size_t offset) const { return number<std::uint64_t>(offset); }
    std::int16_t i16(std::size_t offset) const { return static_cast<std::int16_t>(u16(offset)); }
    std::int32_t i32(std::size_t offset) const { return static_cast<std::int32_t>(u32(offset)); }

    std::span<const std::uint8_t> slice(std::size_t offset, std::size_t count) const {
        if (!has(offset, count)) {
            throw std::out_of_range(std::to_string(count) + " bytes at " + std::to_string(offset) +
                                    " of " + std::to_string(bytes.size()));
        }
        return bytes.subspan(offset, count);
    }

  private:
    template <typename Unsigned>
    Unsigned number(std::size_t offset) const {
        const auto part = slice(offset, sizeof(Unsigned));
        std::uint64_t value = 0;
        for (std::size_t i = part.size(); i-- > 0;) {
            value = (value << 8) | part[i];
        }
        return static_cast<Unsigned>(value);
    }

    std::span<const std::uint8_t> bytes;
};

// Replaces the number at that place. REQUIRES: it lies inside the bytes.
template <typename Unsigned>
void writeNumber(Bytes& bytes, std::size_t offset, Unsigned value) {
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
        bytes.at(offset + i) = static_cast<std::uint8_t>(std::uint64_t{value} >> (8 * i));
    }
}
inline void writeU16(Bytes& bytes, std::size_t offset, std::uint16_t value) {
    writeNumber(bytes, offset, value);
}
inline void writeU32(Bytes& bytes, std::size_t offset, std::uint32_t value) {
    writeNumber(bytes, offset, value);
}

// Builds a message or block field by field.
class ByteWriter {
  public:
    ByteWriter& u8(std::uint8_t value) { return number(value); }
    ByteWriter& u16(std::uint16_t value) { return number(value); }
    ByteWriter& u32(std::uint32_t value) { return number(value); }
    ByteWriter& u64(std::uint64_t value) { return number(value); }
    ByteWriter& i32(std::int32_t value) { return number(static_cast<std::uint32_t>(value)); }

    ByteWriter& append(std::span<const std::uint8_t> part) {
        bytes.insert(bytes.end(), part.begin(), part.end());
        return *this;
    }
    ByteWriter& zeros(std::size_t count) {
        bytes.resize(bytes.size() + count);
        return *this;
    }

    std::size_t size() const { return bytes.size(); }
    // Hands the bytes over and leaves the writer empty.
    Bytes take() { return std::exchange(bytes, {}); }

  private:
    template <typename Unsigned>
    ByteWriter& number(Unsigned value) {
        zeros(sizeof(Unsigned));
        writeNumber(bytes, bytes.size() - sizeof(Unsigned), value);
        return *this;
    }

    Bytes bytes;
};

}  // namespace tavocal
