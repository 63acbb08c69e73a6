#include "base/TextToNumber.h"

#include <cctype>
#include <charconv>
#include <cstdlib>

#include "base/Failures.h"

namespace tavocal {

namespace {

// from_chars takes neither leading white space nor a plus sign.
const char* skipSpaceAndPlus(const char* first, const char* last) {
    while (first != last && std::isspace(static_cast<unsigned char>(*first)) != 0) {
        ++first;
    }
    const bool plus = first != last && *first == '+' && first + 1 != last && first[1] != '-';
    return plus ? first + 1 : first;
}

}  // namespace

std::int32_t parseInt(const std::string& text) {
    if (text.empty()) {
        return 0;
    }
    const char* last = text.data() + text.size();
    std::int32_t value = 0;
    const auto result = std::from_chars(skipSpaceAndPlus(text.data(), last), last, value, 10);
    if (result.ec != std::errc() || result.ptr != last) {
        throw CalibrationException("Conversion error. Value " + text + " is not a valid number");
    }
    return value;
}

bool readDouble(std::string_view text, double& value) {
    const char* const last = text.data() + text.size();
    const auto result = std::from_chars(text.data(), last, value);
    if (result.ec == std::errc() && result.ptr == last) {
        return true;
    }
    // Rare forms: blanks in front, a plus sign, hexadecimal, a magnitude out of range.
    const std::string whole(text);
    char* end = nullptr;
    value = std::strtod(whole.c_str(), &end);
    return !whole.empty() && end == whole.c_str() + whole.size();
}

double parseDouble(const std::string& text) {
    double value = 0.0;
    if (!readDouble(text, value)) {
        throw CalibrationException("Conversion error. Value " + text + " is not a valid double");
    }
    return value;
}

}  // namespace tavocal
