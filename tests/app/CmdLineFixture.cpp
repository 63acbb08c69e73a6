#include "app/CmdLineFixture.h"

#include <sstream>
#include <vector>

#include "base/Failures.h"

namespace tavocal::test {

namespace {

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::vector<std::string> splitArguments(const std::string& line, const std::string& folder) {
    std::vector<std::string> arguments = {"C:\\tools\\tavocal.exe"};
    std::istringstream words(line);
    for (std::string word; words >> word;) {
        arguments.push_back(word == "''" ? "" : replaceAll(word, "$", folder));
    }
    return arguments;
}

}  // namespace

CmdLineFixture::CmdLineFixture() {
    for (const char* name : {"cal.xml", "cal.bin", "xml", "light.txt", "light.CSV", "light.xml"}) {
        folder.write(name, "");
    }
}

std::string CmdLineFixture::failureOf(const std::string& line) {
    const std::vector<std::string> arguments = splitArguments(line, folder.path());
    std::vector<const char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    try {
        cmdLine.parse(static_cast<int>(arguments.size()), argv.data());
    } catch (const CmdLineException& failure) {
        return replaceAll(failure.what(), folder.path(), "$");
    }
    return {};
}

}  // namespace tavocal::test
