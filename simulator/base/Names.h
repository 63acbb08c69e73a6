#pragma once

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

namespace tavocal::simulator {

// The value of an enumeration with that name. `names` has one for each value, in their order.
template <typename Enum>
std::optional<Enum> valueNamed(std::span<const std::string_view> names, std::string_view name) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<Enum>(found - names.begin()));
}

}  // namespace tavocal::simulator
