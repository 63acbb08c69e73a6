#include <poll.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>

#include "platform/Console.h"
#include "simulator/live/LiveRun.h"

namespace tavocal::simulator {

namespace {

constexpr const char* kSocket = "tavo.sock";
constexpr std::chrono::seconds kGrace{10};

bool showsColours() {
    return isatty(STDOUT_FILENO) == 1;
}

}  // namespace

LiveRun::LiveRun(const LiveRequest& request)
    : device(request),
      server(kSocket, device.firmware(), request.options.speed),
      tool(request.tool, showsColours()),
      person(request.options, request.tool, device.world(),
             [this](const std::string& text) { tool.type(text); }) {}

int LiveRun::finish() {
    while (!tool.hasEnded()) {
        serve();
    }
    for (std::string rest = tool.takeOutput(); !rest.empty(); rest = tool.takeOutput()) {
        platform::Console::instance().write(rest);
    }
    platform::Console::instance().flush();
    return tool.status();
}

void LiveRun::serve() {
    std::array<pollfd, 2> files = {{{tool.output(), POLLIN, 0}, {signals.file(), POLLIN, 0}}};
    server.serve(files);
    if (files[0].revents != 0) {
        passOutputOn();
    }
    if (files[1].revents != 0) {
        passSignalOn();
    }
    if (killAt && std::chrono::steady_clock::now() > *killAt) {
        tool.signal(SIGKILL);
    }
    noteRecording();
    person.advance(server.now(), recordingSince);
    tellComplaint();
}

void LiveRun::passOutputOn() {
    const std::string output = tool.takeOutput();
    platform::Console::instance().write(output);
    platform::Console::instance().flush();
    person.read(output, server.now());
}

void LiveRun::passSignalOn() {
    if (const int number = signals.take()) {
        tool.signal(number);
        killAt = std::chrono::steady_clock::now() + kGrace;
    }
}

void LiveRun::noteRecording() {
    if (!device.firmware().listener()) {
        recordingSince.reset();
    } else if (!recordingSince) {
        recordingSince = server.now();
    }
}

void LiveRun::tellComplaint() {
    if (person.complaint() != toldComplaint) {
        toldComplaint = person.complaint();
        std::fprintf(stderr, "tavosim: %s\n", toldComplaint.c_str());
    }
}

}  // namespace tavocal::simulator
