#include "simulator/arguments/Arguments.h"
#include "simulator/live/LiveArguments.h"
#include "simulator/program/LiveCommands.h"

namespace tavocal::simulator {

namespace {

[[noreturn]] void refuse() {
    throw ArgumentError("Live runs need a Unix socket, which this system's tool does not look for");
}

}  // namespace

int runRunCommand(const std::vector<std::string>&) {
    refuse();
}

void runServeCommand(const std::vector<std::string>&) {
    refuse();
}

std::string liveUsage() {
    return {};
}

}  // namespace tavocal::simulator
