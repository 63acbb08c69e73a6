#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Arguments.h"

namespace tavocal::simulator {

// One option of a command that fills a `Request`.
template <typename Request>
struct Option {
    std::string_view name;
    std::string_view value;  // what the usage text calls it; empty for an option without one
    std::string_view meaning;
    void (*apply)(Request& request, Arguments& arguments);
};

// Applies every argument to `request`. Throws ArgumentError, also for an option that the table
// doesn't have.
template <typename Request>
void applyOptions(std::span<const Option<Request>> options,
                  const std::vector<std::string>& arguments, Request& request) {
    Arguments walk(arguments);
    for (std::string name; walk.nextOption(name);) {
        const Option<Request>* found = nullptr;
        for (const Option<Request>& option : options) {
            found = option.name == name ? &option : found;
        }
        if (found == nullptr) {
            throw ArgumentError("Unknown option " + name);
        }
        found->apply(request, walk);
    }
}

// A line for each option.
template <typename Request>
std::string optionsUsage(std::span<const Option<Request>> options) {
    constexpr std::size_t kWidth = 27;
    std::string text;
    for (const Option<Request>& option : options) {
        std::string left = "  " + std::string(option.name) + " " + std::string(option.value);
        left.resize(kWidth, ' ');
        text += left + std::string(option.meaning) + "\n";
    }
    return text;
}

}  // namespace tavocal::simulator
