#pragma once

#include <optional>
#include <span>
#include <string>

#include "simulator/arguments/OptionTable.h"
#include "simulator/recording/Recording.h"

namespace tavocal::simulator {

// What the device, the place and the hand are like: the options that all commands with motion have
// in common.
std::span<const Option<RecordingOptions>> deviceOptionTable();

// A value that was looked up by its name. Throws ArgumentError if there is none.
template <typename Value>
Value known(const std::optional<Value>& value, std::string_view what, const std::string& text) {
    if (!value) {
        throw ArgumentError("There is no " + std::string(what) + " " + text);
    }
    return *value;
}

// Throws ArgumentError if the flow has no such stage, or none for the mistake.
void checkMistake(const OperatorOptions& options);

}  // namespace tavocal::simulator
