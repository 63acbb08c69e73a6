#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavocal {

// How a device is built. The values are the firmware's.
enum class FormFactor : std::uint8_t {
    twoInOne = 0,
    kickstand = 1,
    swivel = 2,
    tablet = 3,
    clamshell = 4,
    mid = 5,
};

// Where the hinge of a device is. The values are the firmware's.
enum class Hinge : std::uint8_t {
    bottom = 0,
    top = 1,
    left = 2,
    right = 3,
};

// The name in dump files; empty for a value that the enumeration doesn't list.
std::string formFactorText(std::uint8_t formFactor);
std::string hingeText(std::uint8_t hinge);

// Set the value of a name, which is case-sensitive. Any other text leaves it as it was.
void setFormFactorFromText(std::uint8_t& formFactor, std::string_view text);
void setHingeFromText(std::uint8_t& hinge, std::string_view text);

}  // namespace tavocal
