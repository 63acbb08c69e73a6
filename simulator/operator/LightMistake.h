#pragma once

#include <optional>
#include <string_view>

namespace tavocal::simulator {

// What can go wrong while a lamp is taken through its levels.
enum class LightMistake {
    None,
    StuckLight,  // the lamp stays at the level before the last one
    Unstable,    // the last level flickers strongly
    CutShort,    // the recording ends while the lamp changes to the last level
    Dark,        // something covers the sensor all the time
};

// "none", "stuck-light", "unstable", "cut-short", "dark".
std::string_view lightMistakeName(LightMistake mistake);
std::optional<LightMistake> lightMistakeFromName(std::string_view name);

}  // namespace tavocal::simulator
