#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "app/CmdLine.h"
#include "base/Failures.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"

namespace tavocal::test {

// Command lines as command-lines.txt writes them.
class CmdLineFixture : public ::testing::Test {
  protected:
    CmdLineFixture() {
        for (const char* name :
             {"cal.xml", "cal.bin", "xml", "light.txt", "light.CSV", "light.xml"}) {
            folder.write(name, "");
        }
    }

    // With $ for the folder; kNoFailure if the line is accepted.
    std::string failureOf(const std::string& line) {
        std::vector<std::string> arguments = {"C:\\tools\\tavocal.exe"};
        std::istringstream words(line);
        for (std::string word; words >> word;) {
            arguments.push_back(word == "''" ? "" : replaced(word, "$", folder.path()));
        }
        std::vector<const char*> argv;
        for (const std::string& argument : arguments) {
            argv.push_back(argument.c_str());
        }
        return replaced(messageOf<CmdLineException>(
                            [&] { cmdLine.parse(static_cast<int>(argv.size()), argv.data()); }),
                        folder.path(), "$");
    }

    // The rows of a table beside the tests, parted at "=> ".
    static std::vector<std::pair<std::string, std::string>> rowsOf(const std::string& table) {
        std::vector<std::pair<std::string, std::string>> rows;
        std::istringstream lines(fileContent(TAVOCAL_TESTS "/app/" + table));
        for (std::string line; std::getline(lines, line);) {
            const std::size_t arrow = line.find("=> ");
            if (arrow != std::string::npos) {
                rows.emplace_back(line.substr(0, arrow), line.substr(arrow + 3));
            }
        }
        EXPECT_GT(rows.size(), 20U);
        return rows;
    }

    static std::string replaced(std::string text, const std::string& from, const std::string& to) {
        for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from)) {
            text.replace(at, from.size(), to);
        }
        return text;
    }

    CmdLine cmdLine;
    TempFolder folder;
};

}  // namespace tavocal::test
