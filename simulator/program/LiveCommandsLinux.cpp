#include "simulator/arguments/Arguments.h"
#include "simulator/live/LiveArguments.h"
#include "simulator/live/LiveRun.h"
#include "simulator/live/ServeRun.h"
#include "simulator/program/LiveCommands.h"

namespace tavocal::simulator {

namespace {

constexpr double kRunSpeed = 20.0;
constexpr double kServeSpeed = 1.0;

}  // namespace

int runRunCommand(const std::vector<std::string>& arguments) {
    const LiveRequest request = parseLiveArguments(arguments, kRunSpeed);
    if (request.tool.empty()) {
        throw ArgumentError("The tool and its arguments are missing, behind --");
    }
    LiveRun run(request);
    const int status = run.finish();
    run.saveDevice();
    return status;
}

void runServeCommand(const std::vector<std::string>& arguments) {
    const LiveRequest request = parseLiveArguments(arguments, kServeSpeed);
    if (!request.tool.empty()) {
        throw ArgumentError("Only `run` starts a tool");
    }
    ServeRun run(request);
    run.finish();
    run.saveDevice();
}

std::string liveUsage() {
    return "tavosim run [options] -- tavocal ARGUMENTS\n"
           "tavosim serve [options]\n" +
           liveOptionsUsage();
}

}  // namespace tavocal::simulator
