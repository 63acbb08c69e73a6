#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "app/CmdLine.h"
#include "base/Failures.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

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
