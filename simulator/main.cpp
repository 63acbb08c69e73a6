#include <cstdio>
#include <string>
#include <vector>

#include "platform/Console.h"
#include "simulator/Arguments.h"
#include "simulator/RecordCommand.h"

namespace {

constexpr int kWrongArguments = 2;

int run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        throw tavocal::simulator::ArgumentError(
            "The command is missing; tavosim --help lists them");
    }
    const std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    if (arguments[0] == "record") {
        return tavocal::simulator::runRecordCommand(rest);
    }
    if (arguments[0] == "--help") {
        tavocal::platform::Console::instance().write(tavocal::simulator::recordUsage());
        tavocal::platform::Console::instance().flush();
        return 0;
    }
    throw tavocal::simulator::ArgumentError("Unknown command " + arguments[0]);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const tavocal::simulator::ArgumentError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return kWrongArguments;
    }
}
