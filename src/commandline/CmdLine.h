#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "commandline/CmdLineOption.h"

namespace tavocal {

// The command line of a run: its options, the rules on how they combine, and the usage text.
// A plain value that can be copied; it writes nothing and starts nothing, and of the file system
// it only asks whether the files that a run reads first can be opened.
class CmdLine {
  public:
    CmdLine();

    // Takes in a whole command line, in place of an earlier one. Throws CmdLineException with the
    // first thing that is wrong; the object is then only good for `usage`.
    void parse(int argc, const char* const* argv);

    // Whether the option was given; upper and lower case are the same. REQUIRES here and below: the
    // table has such an option.
    bool hasOption(std::string_view name) const;

    // The value of an option, whose name is in the table's spelling exactly. Empty if the option
    // was not given or takes no value.
    std::string value(std::string_view name) const;

    // What main prints for a wrong command line. `path` is argv[0]; the program's name is the part
    // behind its last backslash.
    std::string usage(std::string_view path) const;

    // The options that were given, in their order.
    const std::vector<CmdLineParsedOption>& parsedOptions() const { return parsed; }
    const std::vector<CmdLineOption>& optionTable() const { return options; }
    // argv[0].
    const std::string& program() const { return programPath; }

  private:
    void parseOptions(const std::vector<std::string>& arguments);
    void checkIsNew(const std::string& name) const;
    const CmdLineOption& findRow(const std::string& name) const;
    bool isGiven(std::string_view name) const;

    std::vector<CmdLineParsedOption> parsed;
    std::string programPath;
    std::vector<CmdLineOption> options;
};

}  // namespace tavocal
