#include "support/TextTable.h"

#include <gtest/gtest.h>

#include "support/Lines.h"
#include "support/TempFolder.h"

namespace tavocal::test {

TextTable rowsOf(const std::string& path, const std::string& title) {
    constexpr std::string_view kArrow = "=> ";
    TextTable rows;
    bool inTable = title.empty();
    for (const std::string& line : linesOf(fileContent(TAVOCAL_TESTS "/" + path))) {
        const std::size_t at = line.find(kArrow);
        if (line.starts_with("== ")) {
            inTable = line == title;
        } else if (inTable && at != std::string::npos) {
            rows.emplace_back(line.substr(0, at), line.substr(at + kArrow.size()));
        }
    }
    EXPECT_FALSE(rows.empty()) << path << " " << title;
    return rows;
}

TextTable tableOfTest(const TextTable& meanings) {
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string source = test->file();
    const std::size_t begin = source.rfind("tests/") + 6;
    TextTable rows = rowsOf(source.substr(begin, source.rfind('.') - begin) + ".txt",
                            "== " + std::string(test->name()) + " ==");
    TextTable words = meanings;
    words.insert(words.end(),
                 {{"\\n", "\n"}, {"\\r", "\r"}, {"\\t", "\t"}, {"\\v", "\v"}, {"|", ""}});
    for (auto& [given, expected] : rows) {
        given.resize(given.size() - given.ends_with(' '));
        for (const auto& [word, meaning] : words) {
            given = replaceAll(given, word, meaning);
            expected = replaceAll(expected, word, meaning);
        }
    }
    return rows;
}

std::vector<std::uint8_t> bytesOf(const std::string& hex) {
    const std::string digits = replaceAll(hex, " ", "");
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

}  // namespace tavocal::test
