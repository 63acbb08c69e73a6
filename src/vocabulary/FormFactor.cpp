#include "vocabulary/FormFactor.h"

#include <algorithm>
#include <array>

namespace tavocal {

namespace {

// Each at the index of its value.
constexpr std::array<std::string_view, 6> kFormFactors = {"2IN1",   "KICKSTAND", "SWIVEL",
                                                          "TABLET", "CLAMSHELL", "MID"};
constexpr std::array<std::string_view, 4> kHinges = {"BOTTOM", "TOP", "LEFT", "RIGHT"};

template <typename Names>
std::string nameOf(const Names& names, std::uint8_t value) {
    return value < names.size() ? std::string(names[value]) : std::string();
}

template <typename Names>
void setFromName(const Names& names, std::uint8_t& value, std::string_view text) {
    const auto found = std::find(names.begin(), names.end(), text);
    if (found != names.end()) {
        value = static_cast<std::uint8_t>(found - names.begin());
    }
}

}  // namespace

std::string formFactorText(std::uint8_t formFactor) {
    return nameOf(kFormFactors, formFactor);
}

std::string hingeText(std::uint8_t hinge) {
    return nameOf(kHinges, hinge);
}

void setFormFactorFromText(std::uint8_t& formFactor, std::string_view text) {
    setFromName(kFormFactors, formFactor, text);
}

void setHingeFromText(std::uint8_t& hinge, std::string_view text) {
    setFromName(kHinges, hinge, text);
}

}  // namespace tavocal
