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

inline std::string replaceAll(std::string text, std::string_view part, std::string_view with) {
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += with.size()) {
        text.replace(at, part.size(), with);
    }
    return text;
}

}  // namespace tavocal::test
