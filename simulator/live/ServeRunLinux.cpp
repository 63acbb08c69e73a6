#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/Console.h"
#include "simulator/live/ServeRun.h"

namespace tavocal::simulator {

namespace {

constexpr const char* kSocket = "tavo.sock";
constexpr double kReaction = 0.2;  // simulated seconds
constexpr std::size_t kLongestLine = 1000;

void tell(const std::string& text) {
    platform::Console::instance().write(text + "\n");
    platform::Console::instance().flush();
}

// A whole number behind a word.
std::optional<int> numberBehind(std::string_view word, const std::string& line) {
    if (!line.starts_with(word)) {
        return std::nullopt;
    }
    int value = 0;
    const char* end = line.data() + line.size();
    const auto [stop, failure] = std::from_chars(line.data() + word.size(), end, value);
    return failure == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

}  // namespace

ServeRun::ServeRun(const LiveRequest& request)
    : device(request),
      options(request.options.motion),
      seed(request.options.motion.seed),
      server(kSocket, device.firmware(), request.options.speed),
      person(options, seed, device.world().device()) {}

std::string ServeRun::help() {
    return "A number: the movement of that step of the flow. light LUX: another light level.\n"
           "flow NAME: another flow, from its first position. quit: the end.";
}

void ServeRun::finish() {
    tell(help());
    while (!finished) {
        serve();
    }
}

void ServeRun::serve() {
    std::array<pollfd, 2> files = {
        {{inputEnded ? -1 : STDIN_FILENO, POLLIN, 0}, {signals.file(), POLLIN, 0}}};
    server.serve(files);
    if (files[0].revents != 0) {
        readInput();
    }
    if (files[1].revents != 0 && signals.take() != 0) {
        finished = true;
    }
}

void ServeRun::readInput() {
    std::array<char, 256> part{};
    const ssize_t got = read(STDIN_FILENO, part.data(), part.size());
    inputEnded = got <= 0;
    for (ssize_t i = 0; i < got; ++i) {
        const char character = part[static_cast<std::size_t>(i)];
        if (character == '\n') {
            obey(std::exchange(partialLine, {}));
        } else if (partialLine.size() < kLongestLine) {
            partialLine.push_back(character);
        }
    }
}

void ServeRun::obey(const std::string& line) {
    if (line == "quit") {
        finished = true;
    } else if (!line.empty() && !moveTo(line) && !changeLight(line) && !changeFlow(line)) {
        tell(help());
    }
}

// When the next movement can begin.
double ServeRun::nextBegin() {
    return std::max(server.now() + kReaction, device.world().device().motion().end());
}

bool ServeRun::moveTo(const std::string& line) {
    const auto number = numberBehind("", line);
    if (!number || *number < 1 || static_cast<std::size_t>(*number) > person.stepCount()) {
        return false;
    }
    person.perform(static_cast<std::size_t>(*number - 1), nextBegin());
    return true;
}

bool ServeRun::changeLight(const std::string& line) {
    const auto lux = numberBehind("light ", line);
    if (!lux || *lux < 0) {
        return false;
    }
    device.world().lamp().changeTo(*lux, server.now());
    return true;
}

bool ServeRun::changeFlow(const std::string& line) {
    constexpr std::string_view kWord = "flow ";
    const auto flow =
        line.starts_with(kWord) ? flowFromName(line.substr(kWord.size())) : std::nullopt;
    if (flow) {
        options.flow = *flow;
        person.begin(options, seed, nextBegin());
    }
    return flow.has_value();
}

}  // namespace tavocal::simulator
