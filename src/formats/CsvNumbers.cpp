#include "formats/CsvNumbers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace tavocal {

namespace {

constexpr std::uint64_t kLargestTimestamp = 4294967295;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// The form that dumps are written in: digits, perhaps a point and more digits.
bool isPlainDecimal(std::string_view field) {
    const bool leadingZero = field.size() > 1 && field[0] == '0' && isDigit(field[1]);
    return !field.empty() && isDigit(field[0]) && !leadingZero &&
           std::all_of(field.begin(), field.end(), [](char c) { return isDigit(c) || c == '.'; });
}

}  // namespace

double readCsvMilliseconds(std::string_view field) {
    std::uint64_t number = 0;
    if (isPlainDecimal(field)) {
        const auto result = std::from_chars(field.data(), field.data() + field.size(), number);
        if (result.ec == std::errc::result_out_of_range) {
            number = kLargestTimestamp;
        }
    } else {
        const std::string text(field);
        number = std::strtoull(text.c_str(), nullptr, 0);
    }
    return static_cast<double>(std::min(number, kLargestTimestamp));
}

}  // namespace tavocal
