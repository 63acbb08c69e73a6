#include "vocabulary/Luid.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "base/Text.h"

namespace tavocal {

namespace {

std::uint8_t low(std::uint16_t value) {
    return static_cast<std::uint8_t>(value & 0xFF);
}

std::uint8_t high(std::uint16_t value) {
    return static_cast<std::uint8_t>(value >> 8);
}

std::uint16_t word(std::uint8_t lowByte, std::uint8_t highByte) {
    return static_cast<std::uint16_t>(lowByte | (highByte << 8));
}

template <typename Field>
Field hexField(std::string_view text, std::size_t first, std::size_t digits) {
    Field value = 0;
    std::from_chars(text.data() + first, text.data() + first + digits, value, 16);
    return value;
}

}  // namespace

std::string luidText(const LUID& luid) {
    const std::array<std::uint8_t, kLuidSize> digits = {
        high(luid.SensorTypeId), low(luid.SensorTypeId), high(luid.VendorId), low(luid.VendorId),
        high(luid.SubTypeId),    low(luid.SubTypeId),    luid.InstanceId,     luid.Flags};
    return hexText(digits.data(), digits.size());
}

bool parseLuidText(std::string_view text, LUID& luid) {
    const auto isDigit = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    if (text.size() != 2 * kLuidSize || !std::all_of(text.begin(), text.end(), isDigit)) {
        return false;
    }
    luid.SensorTypeId = hexField<std::uint16_t>(text, 0, 4);
    luid.VendorId = hexField<std::uint16_t>(text, 4, 4);
    luid.SubTypeId = hexField<std::uint16_t>(text, 8, 4);
    luid.InstanceId = hexField<std::uint8_t>(text, 12, 2);
    luid.Flags = hexField<std::uint8_t>(text, 14, 2);
    return true;
}

std::array<std::uint8_t, kLuidSize> luidBytes(const LUID& luid) {
    return {
        low(luid.SensorTypeId), high(luid.SensorTypeId), low(luid.VendorId), high(luid.VendorId),
        low(luid.SubTypeId),    high(luid.SubTypeId),    luid.InstanceId,    luid.Flags};
}

LUID luidFromBytes(const std::uint8_t* bytes) {
    return {word(bytes[0], bytes[1]), word(bytes[2], bytes[3]), word(bytes[4], bytes[5]), bytes[6],
            bytes[7]};
}

}  // namespace tavocal
