#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavocal::test {

// The lines of a text without their ends; carriage returns stay.
inline std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

inline void replaceAll(std::string& text, std::string_view before, std::string_view after) {
    for (std::size_t at = text.find(before); at != std::string::npos;
         at = text.find(before, at + after.size())) {
        text.replace(at, before.size(), after);
    }
}

}  // namespace tavocal::test
