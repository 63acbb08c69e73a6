#include "app/Interruption.h"

#include <cstdlib>
#include <exception>
#include <string>
#include <thread>
#include <utility>

#include "app/InterruptGate.h"
#include "base/Patience.h"
#include "platform/Console.h"
#include "platform/UnfinishedFiles.h"

namespace tavocal {

namespace {

void printLine(const std::string& text) {
    platform::print(text + "\n");
    platform::Console::instance().flush();
}

void after(std::chrono::milliseconds time, std::function<void()> action) {
    std::thread([time, action = std::move(action)] {
        std::this_thread::sleep_for(time);
        action();
    }).detach();
}

}  // namespace

Interruption::Interruption(InterruptGate& interruptGate, std::function<void()> stop)
    : Interruption(interruptGate, std::move(stop), Bounds{}) {}

Interruption::Interruption(InterruptGate& interruptGate, std::function<void()> stop, Bounds times)
    : gate(interruptGate), stopRun(std::move(stop)), bounds(times) {}

void Interruption::endProcess(int signal) const {
    startLastResort(signal);
    gate.announce();
    Patience::instance().end();
    printLine("Interrupt signal (" + std::to_string(signal) + ") received.");
    const bool inOrder = gate.close(bounds.work);
    if (inOrder) {
        stop();
    }
    platform::Console::instance().writeLast("Abort request\n");
    platform::removeUnfinishedFiles();
    if (inOrder) {
        std::exit(signal);
    }
    // A thread that hangs may hold what `exit` waits for.
    std::_Exit(signal);
}

void Interruption::startLastResort(int signal) const {
    after(bounds.order, [signal] {
        platform::removeUnfinishedFiles();
        std::_Exit(signal);
    });
    after(bounds.removal, [signal] { std::_Exit(signal); });
}

void Interruption::stop() const {
    try {
        stopRun();
    } catch (const std::exception& exception) {
        // Whatever could not be saved, the process ends as the operator asked.
        printLine(exception.what());
    }
}

}  // namespace tavocal
