#include "simulator/operator/LightMistake.h"

#include <array>

#include "simulator/base/Names.h"

namespace tavocal::simulator {

namespace {

constexpr std::array<std::string_view, 5> kNames = {"none", "stuck-light", "unstable", "cut-short",
                                                    "dark"};

}  // namespace

std::string_view lightMistakeName(LightMistake mistake) {
    return kNames[static_cast<std::size_t>(mistake)];
}

std::optional<LightMistake> lightMistakeFromName(std::string_view name) {
    return valueNamed<LightMistake>(kNames, name);
}

}  // namespace tavocal::simulator
