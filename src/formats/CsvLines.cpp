#include "formats/CsvLines.h"

namespace tavocal {

CsvLines::CsvLines(std::string_view text) : rest(text) {}

bool CsvLines::next(std::string_view& line) {
    if (rest.empty()) {
        return false;
    }
    const std::size_t end = rest.find('\n');
    line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return true;
}

void splitFields(std::string_view line, char separator, std::size_t limit,
                 std::vector<std::string_view>& fields) {
    fields.clear();
    while (!line.empty() && fields.size() < limit) {
        const std::size_t end = line.find(separator);
        fields.push_back(line.substr(0, end));
        line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
    }
}

}  // namespace tavocal
