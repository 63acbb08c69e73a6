#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/arguments/Arguments.h"

namespace tavocal::simulator {

// One option of a command that fills a `Request`.
template <typename Request>
struct Option {
    std::string_view name;
    std::string_view value;  // what the usage text calls it; empty for an option without one
    std::string_view meaning;
    void (*apply)(Request& request, Arguments& arguments);
};

// Applies one argument to `request`. False if the table doesn't have that option.
template <typename Request>
bool applyOption(std::span<const Option<Request>> options, const std::string& name,
                 Arguments& arguments, Request& request) {
    const auto found =
        std::find_if(options.begin(), options.end(),
                     [&name](const Option<Request>& option) { return option.name == name; });
    if (found == options.end()) {
        return false;
    }
    found->apply(request, arguments);
    return true;
}

// Applies every argument to `request`. Throws ArgumentError, also for an option that the table
// doesn't have.
template <typename Request>
void applyOptions(std::span<const Option<Request>> options,
                  const std::vector<std::string>& arguments, Request& request) {
    Arguments walk(arguments);
    for (std::string name; walk.nextOption(name);) {
        if (!applyOption(options, name, walk, request)) {
            throw ArgumentError("Unknown option " + name);
        }
    }
}

// The same with two tables, each with a request of its own.
template <typename First, typename Second>
void applyOptions(std::span<const Option<First>> firstOptions, First& first,
                  std::span<const Option<Second>> secondOptions, Second& second,
                  const std::vector<std::string>& arguments) {
    Arguments walk(arguments);
    for (std::string name; walk.nextOption(name);) {
        if (!applyOption(firstOptions, name, walk, first) &&
            !applyOption(secondOptions, name, walk, second)) {
            throw ArgumentError("Unknown option " + name);
        }
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
