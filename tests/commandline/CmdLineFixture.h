#pragma once

#include <fstream>
#include <sstream>

#include "commandline/CmdLine.h"
#include "support/Outcome.h"
#include "support/TextTable.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

// Command lines as command-lines.txt writes them.
class CmdLineFixture : public ::testing::Test {
  protected:
    CmdLineFixture() {
        for (const char* name :
             {"cal.xml", "cal.bin", "xml", "light.txt", "light.CSV", "light.xml"}) {
            std::ofstream{name};
        }
    }

    std::string failureOf(const std::string& line) {
        std::vector<std::string> arguments = {"C:\\tools\\tavocal.exe"};
        std::istringstream words(line);
        for (std::string word; words >> word;) {
            arguments.push_back(word == "''" ? "" : word);
        }
        std::vector<const char*> argv;
        for (const std::string& argument : arguments) {
            argv.push_back(argument.c_str());
        }
        return messageOf<CmdLineException>(
            [&] { cmdLine.parse(static_cast<int>(argv.size()), argv.data()); });
    }

    const WorkingFolder folder;
    CmdLine cmdLine;
};

}  // namespace tavocal::test
