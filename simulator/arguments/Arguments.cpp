#include "simulator/arguments/Arguments.h"

#include <algorithm>
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
    return wholeNumber(text(), low, high);
}

std::vector<int> Arguments::wholeNumbers(int low, int high) {
    const std::string list = text();
    std::vector<int> numbers;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        numbers.push_back(
            static_cast<int>(wholeNumber(list.substr(begin, end - begin), low, high)));
        begin = end + 1;
    }
    return numbers;
}

std::string Arguments::line() {
    const std::string value = text();
    if (value.find_first_of("\r\n") != std::string::npos) {
        throw ArgumentError("The value of " + option + " must be one line");
    }
    return value;
}

long long Arguments::wholeNumber(const std::string& value, long long low, long long high) const {
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
