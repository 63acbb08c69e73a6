#include "simulator/operator/LightMistake.h"

#include <array>

namespace tavocal::simulator {

namespace {

constexpr std::array<std::string_view, 5> kNames = {"none", "stuck-light", "unstable", "cut-short",
                                                    "dark"};

}  // namespace

std::string_view lightMistakeName(LightMistake mistake) {
    return kNames[static_cast<std::size_t>(mistake)];
}

std::optional<LightMistake> lightMistakeFromName(std::string_view name) {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (kNames[i] == name) {
            return static_cast<LightMistake>(i);
        }
    }
    return std::nullopt;
}

}  // namespace tavocal::simulator
