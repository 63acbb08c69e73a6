#include "commandline/CmdLine.h"

#include <algorithm>
#include <cassert>

#include "base/Failures.h"
#include "base/Text.h"
#include "commandline/CmdLineOptions.h"
#include "commandline/CmdLineRules.h"
#include "commandline/CmdLineUsage.h"
#include "commandline/CmdLineValue.h"

namespace tavocal {

namespace {

// The row of that name, or the end. Upper and lower case are the same.
template <typename Options>
auto rowOf(const Options& options, std::string_view name) {
    return std::find_if(options.begin(), options.end(), [name](const auto& option) {
        return lowerCase(option.name) == lowerCase(name);
    });
}

bool isOption(std::string_view argument) {
    return startsWith(argument, "-");
}

// The arguments behind the program's path. A null pointer ends them before `argc` does.
std::vector<std::string> collectArguments(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    for (int i = 1; i < argc && argv[i] != nullptr; ++i) {
        arguments.emplace_back(argv[i]);
    }
    return arguments;
}

}  // namespace

CmdLine::CmdLine() : options(makeCmdLineOptions()) {}

void CmdLine::parse(int argc, const char* const* argv) {
    if (argv == nullptr) {
        throw CmdLineException("No Command line arguments");
    }
    if (argc < 0) {
        throw CmdLineException("Negative number of arguments");
    }
    parsed.clear();
    programPath = argc > 0 && argv[0] != nullptr ? argv[0] : "";
    parseOptions(collectArguments(argc, argv));
    checkCmdLineRules(*this);
}

void CmdLine::parseOptions(const std::vector<std::string>& arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (!isOption(arguments[i])) {
            throw CmdLineException("Invalid argument: '" + arguments[i] + "'");
        }
        const std::string name = arguments[i].substr(1);
        checkIsNew(name);
        CmdLineParsedOption option{findRow(name), {}};
        if (option.takesValue) {
            if (i + 1 == arguments.size() || isOption(arguments[i + 1])) {
                throw CmdLineException("Could not find value for '" + name + "'");
            }
            option.value = arguments[++i];
            checkCmdLineValue(option, name);
        }
        parsed.push_back(std::move(option));
    }
}

void CmdLine::checkIsNew(const std::string& name) const {
    if (isGiven(name)) {
        throw CmdLineException("The '" + name + "' argument was already specified");
    }
}

const CmdLineOption& CmdLine::findRow(const std::string& name) const {
    const auto row = rowOf(options, name);
    if (row == options.end()) {
        throw CmdLineException("Invalid argument: '" + name + "'");
    }
    return *row;
}

bool CmdLine::isGiven(std::string_view name) const {
    return rowOf(parsed, name) != parsed.end();
}

bool CmdLine::hasOption(std::string_view name) const {
    assert(rowOf(options, name) != options.end());
    return isGiven(name);
}

std::string CmdLine::value(std::string_view name) const {
    assert(rowOf(options, name) != options.end());
    const auto option = std::find_if(parsed.begin(), parsed.end(),
                                     [name](const auto& given) { return given.name == name; });
    return option == parsed.end() ? std::string() : option->value;
}

std::string CmdLine::usage(std::string_view path) const {
    const std::size_t backslash = path.rfind('\\');
    return usageText(options,
                     backslash == std::string_view::npos ? path : path.substr(backslash + 1));
}

}  // namespace tavocal
