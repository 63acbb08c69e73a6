#pragma once

#include <cstdint>
#include <string>

namespace tavocal {

// The families of runs that an option may appear in, as bits of CmdLineOption::modeMask.
namespace mode {
constexpr std::uint8_t kXml = 2;
constexpr std::uint8_t kOffline = 4;
constexpr std::uint8_t kCalibrate = 8;
constexpr std::uint8_t kTest = 16;
constexpr std::uint8_t kMagneticTest = 64;
constexpr std::uint8_t kAllButXml = 253;
}  // namespace mode

// One row of the table of options.
struct CmdLineOption {
    std::string name;         // spelling without the dash
    bool takesValue = false;  // the next argument is the option's value
    std::string placeholder;  // stands for the value in the option list; empty for some options
                              // that take one
    bool mandatory = false;   // must be given; no option of today's table has it set
    bool isCommand = false;   // counts as the choice of what a run does
    std::string description;  // text of the option list
    std::uint8_t modeMask = 0;
};

// An option that was given: a copy of its row, so that `name` has the table's spelling.
struct CmdLineParsedOption : CmdLineOption {
    std::string value;  // empty for an option without a value
};

}  // namespace tavocal
