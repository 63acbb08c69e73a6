#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "platform/Console.h"
#include "simulator/Arguments.h"
#include "simulator/LightCommand.h"
#include "simulator/RecordCommand.h"

namespace tavocal::simulator {

namespace {

constexpr int kFailed = 1;
constexpr int kWrongArguments = 2;

void printUsage() {
    platform::Console::instance().write(recordUsage() + "\n" + lightUsage());
    platform::Console::instance().flush();
}

void run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        throw ArgumentError("The command is missing; tavosim --help lists them");
    }
    const std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    if (arguments[0] == "record") {
        asksForLight(rest) ? runLightCommand(rest) : runRecordCommand(rest);
    } else if (arguments[0] == "--help") {
        printUsage();
    } else {
        throw ArgumentError("Unknown command " + arguments[0]);
    }
}

int fail(const std::exception& error, int status) {
    std::fprintf(stderr, "%s\n", error.what());  // rule-exception: a message for scripts
    return status;
}

int runProgram(const std::vector<std::string>& arguments) {
    try {
        run(arguments);
        return 0;
    } catch (const ArgumentError& error) {
        return fail(error, kWrongArguments);
    } catch (const std::exception& error) {
        return fail(error, kFailed);
    }
}

}  // namespace

}  // namespace tavocal::simulator

int main(int argc, char** argv) {
    return tavocal::simulator::runProgram(std::vector<std::string>(argv + 1, argv + argc));
}
