#include "simulator/Arguments.h"

#include <charconv>

#include "base/Failures.h"
#include "base/TextToNumber.h"

namespace tavocal::simulator {

namespace {

std::string shortText(double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text;
}

}  // namespace

Arguments::Arguments(std::vector<std::string> theArguments) : arguments(std::move(theArguments)) {}

bool Arguments::nextOption(std::string& name) {
    if (position == arguments.size()) {
        return false;
    }
    option = name = arguments[position++];
    return true;
}

std::string Arguments::text() {
    if (position == arguments.size() || arguments[position].starts_with("--")) {
        throw ArgumentError("The option " + option + " needs a value");
    }
    return arguments[position++];
}

double Arguments::number(double low, double high) {
    const std::string value = text();
    double result = 0.0;
    try {
        result = parseDouble(value);
    } catch (const CalibrationException&) {
        throw ArgumentError("The value of " + option + " is not a number: " + value);
    }
    if (!(result >= low && result <= high)) {
        throw ArgumentError("The value of " + option + " must lie between " + shortText(low) +
                            " and " + shortText(high) + ": " + value);
    }
    return result;
}

long long Arguments::wholeNumber(long long low, long long high) {
    const std::string value = text();
    long long result = 0;
    const char* end = value.data() + value.size();
    const auto [stop, failure] = std::from_chars(value.data(), end, result);
    if (failure != std::errc() || stop != end) {
        throw ArgumentError("The value of " + option + " is not a whole number: " + value);
    }
    if (result < low || result > high) {
        throw ArgumentError("The value of " + option + " must lie between " + std::to_string(low) +
                            " and " + std::to_string(high) + ": " + value);
    }
    return result;
}

}  // namespace tavocal::simulator
