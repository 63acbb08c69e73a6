#include "support/TextTable.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/TempFolder.h"

namespace tavocal::test {

std::string replaceAll(std::string text, const std::string& part, const std::string& with) {
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += with.size()) {
        text.replace(at, part.size(), with);
    }
    return text;
}

std::vector<std::uint8_t> bytesOf(const std::string& hex) {
    const std::string digits = replaceAll(hex, " ", "");
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

TextTable tableOfTest(const std::string& folder, const TextTable& meanings) {
    const std::string arrow = " => ";
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string title = "== " + std::string(test->name()) + " ==";
    std::istringstream lines(fileContent(std::string(TAVOCAL_TESTS) + "/" + folder + "/" +
                                         test->test_suite_name() + ".txt"));
    TextTable words = meanings;
    words.insert(words.end(),
                 {{"\\n", "\n"}, {"\\r", "\r"}, {"\\t", "\t"}, {"\\v", "\v"}, {"|", ""}});
    TextTable rows;
    bool inTable = false;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t at = line.find(arrow);
        if (line.starts_with("== ")) {
            inTable = line == title;
        } else if (inTable && at != std::string::npos) {
            rows.emplace_back(line.substr(0, at), line.substr(at + arrow.size()));
        }
    }
    for (auto& [given, expected] : rows) {
        for (const auto& [word, meaning] : words) {
            given = replaceAll(given, word, meaning);
            expected = replaceAll(expected, word, meaning);
        }
    }
    EXPECT_FALSE(rows.empty()) << title;
    return rows;
}

}  // namespace tavocal::test
