#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavocal {

// The firmware's identifier of one sensor. On the wire 8 bytes, little-endian, in field order.
struct LUID {
    std::uint16_t SensorTypeId = 0;  // the kind of sensor
    std::uint16_t VendorId = 0;
    std::uint16_t SubTypeId = 0;
    std::uint8_t InstanceId = 0;  // 0 is the primary instance
    std::uint8_t Flags = 0;       // kDynamicFlag, kStaticFlag

    bool operator==(const LUID&) const = default;
};

constexpr std::uint8_t kDynamicFlag = 1;
constexpr std::uint8_t kStaticFlag = 2;

constexpr std::size_t kLuidSize = 8;

// 16 lower-case hexadecimal digits: the fields as numbers, 4, 4, 4, 2 and 2 digits.
std::string luidText(const LUID& luid);

// Reads what luidText prints. False, with `luid` unchanged, for anything but 16 hexadecimal digits.
bool parseLuidText(std::string_view text, LUID& luid);

// The wire form.
std::array<std::uint8_t, kLuidSize> luidBytes(const LUID& luid);
// REQUIRES: at least kLuidSize bytes at `bytes`.
LUID luidFromBytes(const std::uint8_t* bytes);

}  // namespace tavocal
