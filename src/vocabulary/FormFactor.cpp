#include "vocabulary/FormFactor.h"

#include <algorithm>
#include <array>
#include <string_view>

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
bool findName(const Names& names, const std::string& text, std::uint8_t& value) {
    const auto found = std::find(names.begin(), names.end(), text);
    if (found == names.end()) {
        return false;
    }
    value = static_cast<std::uint8_t>(found - names.begin());
    return true;
}

}  // namespace

std::string formFactorText(std::uint8_t formFactor) {
    return nameOf(kFormFactors, formFactor);
}

std::string hingeText(std::uint8_t hinge) {
    return nameOf(kHinges, hinge);
}

bool formFactorFromText(const std::string& text, std::uint8_t& formFactor) {
    return findName(kFormFactors, text, formFactor);
}

bool hingeFromText(const std::string& text, std::uint8_t& hinge) {
    return findName(kHinges, text, hinge);
}

}  // namespace tavocal
