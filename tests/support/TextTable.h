#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/TempFolder.h"

namespace tavocal::test {

// The rows of a table that stands beside the tests, each parted at its "=> ".
inline std::vector<std::pair<std::string, std::string>> rowsOf(const std::string& table) {
    std::vector<std::pair<std::string, std::string>> rows;
    std::istringstream lines(fileContent(TAVOCAL_TESTS "/" + table));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t arrow = line.find("=> ");
        if (arrow != std::string::npos) {
            rows.emplace_back(line.substr(0, arrow), line.substr(arrow + 3));
        }
    }
    EXPECT_FALSE(rows.empty()) << table;
    return rows;
}

}  // namespace tavocal::test
