#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "platform/Console.h"
#include "platform/Interrupt.h"
#include "simulator/arguments/Arguments.h"
#include "simulator/program/LightCommand.h"
#include "simulator/program/LiveCommands.h"
#include "simulator/program/RecordCommand.h"

namespace tavocal::simulator {

namespace {

constexpr int kFailed = 1;
constexpr int kWrongArguments = 2;

int print(const std::string& text) {
    platform::Console::instance().write(text);
    platform::Console::instance().flush();
    return 0;
}

bool asksForHelp(const std::vector<std::string>& arguments) {
    return !arguments.empty() && arguments[0] == "--help";
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        throw ArgumentError("The command is missing; tavosim --help lists them");
    }
    const std::vector<std::string> rest(arguments.begin() + 1, arguments.end());
    if (asksForHelp(arguments)) {
        return print(recordUsage() + "\n" + lightUsage() + "\n" + liveUsage());
    }
    if (arguments[0] == "record") {
        asksForLight(rest) ? runLightCommand(rest) : runRecordCommand(rest);
        return 0;
    }
    if (arguments[0] == "run") {
        return asksForHelp(rest) ? print(liveUsage()) : runRunCommand(rest);
    }
    if (arguments[0] == "serve") {
        asksForHelp(rest) ? static_cast<void>(print(liveUsage())) : runServeCommand(rest);
        return 0;
    }
    throw ArgumentError("Unknown command " + arguments[0]);
}

int fail(const std::exception& error, int status) {
    std::fprintf(stderr, "%s\n", error.what());  // rule-exception: a message for scripts
    return status;
}

int runProgram(const std::vector<std::string>& arguments) {
    try {
        return run(arguments);
    } catch (const ArgumentError& error) {
        return fail(error, kWrongArguments);
    } catch (const std::exception& error) {
        return fail(error, kFailed);
    }
}

}  // namespace

}  // namespace tavocal::simulator

int main(int argc, char** argv) {
    tavocal::platform::hardenProcess();
    return tavocal::simulator::runProgram(std::vector<std::string>(argv + 1, argv + argc));
}
