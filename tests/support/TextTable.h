#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavocal::test {

inline std::string replaceAll(std::string text, const std::string& part, const std::string& with) {
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += with.size()) {
        text.replace(at, part.size(), with);
    }
    return text;
}

// The bytes that hexadecimal digits tell; blanks don't count.
inline std::vector<std::uint8_t> bytesOf(const std::string& hex) {
    const std::string digits = replaceAll(hex, " ", "");
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

// What is given, and what comes of it.
using TextTable = std::vector<std::pair<std::string, std::string>>;

// Controls as C++ writes them; | marks where a text ends or that there is none.
inline const TextTable kControls = {
    {"\\n", "\n"}, {"\\r", "\r"}, {"\\t", "\t"}, {"\\v", "\v"}, {"|", ""}};

// A table that is written as text: one row a line, "given => expected", blank lines passed over.
// Each word of `meanings`, in their order, stands for a longer text.
inline TextTable textTable(std::string_view text, const TextTable& meanings = {}) {
    constexpr std::string_view kArrow = " => ";
    TextTable rows;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const std::size_t arrow = line.find(kArrow);
        if (arrow == std::string_view::npos) {
            continue;
        }
        std::string given(line.substr(0, arrow));
        std::string expected(line.substr(arrow + kArrow.size()));
        for (const auto& [word, meaning] : meanings) {
            given = replaceAll(given, word, meaning);
            expected = replaceAll(expected, word, meaning);
        }
        rows.emplace_back(given, expected);
    }
    return rows;
}

}  // namespace tavocal::test
