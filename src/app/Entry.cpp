#include "app/Entry.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string>

#include "app/CalibrationManager.h"
#include "app/InterruptGate.h"
#include "app/Interruption.h"
#include "app/Version.h"
#include "base/Clock.h"
#include "base/Failures.h"
#include "commandline/CmdLine.h"
#include "log/Logger.h"
#include "platform/Console.h"
#include "platform/Interrupt.h"

namespace tavocal {

namespace {

constexpr int kFailure = -1;

// The one manager of the process, shared with the interrupt's thread. Never destroyed: the main
// thread may be at work in it while `exit` runs on that thread.
struct CurrentRun {
    std::mutex mutex;
    std::shared_ptr<CalibrationManager> theCalibrationManager;
};

CurrentRun& currentRun() {
    static auto* const run = new CurrentRun;
    return *run;
}

void publish(const std::shared_ptr<CalibrationManager>& manager) {
    const std::lock_guard<std::mutex> lock(currentRun().mutex);
    currentRun().theCalibrationManager = manager;
}

std::shared_ptr<CalibrationManager> publishedManager() {
    const std::lock_guard<std::mutex> lock(currentRun().mutex);
    return currentRun().theCalibrationManager;
}

void printLine(const std::string& text) {
    platform::print(text + "\n");
    platform::Console::instance().flush();
}

void abortRun() {
    if (const auto manager = publishedManager()) {
        manager->abort();
    }
}

[[noreturn]] void onInterrupt(int signal) {
    Interruption(InterruptGate::instance(), abortRun).endProcess(signal);
}

void printRunTimes(std::uint64_t runStartMs, int userWaitSeconds) {
    const auto elapsed = static_cast<std::int64_t>(currentTimeMs() - runStartMs);
    printLine("Total run time: " + std::to_string(elapsed / 1000) + " seconds");
    // Whole seconds on both sides, so this can be one less than nothing.
    const std::int32_t working = static_cast<std::int32_t>(elapsed) / 1000 - userWaitSeconds;
    printLine("Total run time (excluding time waiting for user inputs): " +
              std::to_string(working) + " seconds");
}

void run(CmdLine& cmdLine, int argc, char** argv) {
    const std::uint64_t runStartMs = currentTimeMs();
    printLine(std::string("\nTavo Calibration Tool\nVersion: ") + kVersionText);
    cmdLine.parse(argc, argv);
    const auto manager = std::make_shared<CalibrationManager>(cmdLine);
    publish(manager);
    Logger::instance().setLogFilePath(manager->exportFolder() + "logfile.txt");
    manager->start();
    InterruptGate::instance().endRun();
    printRunTimes(runStartMs, manager->userWaitSeconds());
}

// Empty after a run without a failure, else what the operator is told.
std::string runForFailure(CmdLine& cmdLine, int argc, char** argv) {
    try {
        run(cmdLine, argc, argv);
        return {};
    } catch (const CmdLineException& exception) {
        return std::string(exception.what()) + "\n" + cmdLine.usage(argc > 0 ? argv[0] : "");
    } catch (const CalibrationException& exception) {
        return std::string("Error:\n") + exception.what() + "\n";
    } catch (const std::bad_alloc&) {
        return "Out of memory\n";
    } catch (const std::exception& exception) {
        return std::string(exception.what()) + "\n";
    }
}

}  // namespace

int runProgram(int argc, char** argv) {
    platform::openStandardFiles();
    platform::hardenProcess();
    platform::installInterruptHandler(onInterrupt);
    CmdLine cmdLine;
    const std::string failure = runForFailure(cmdLine, argc, argv);
    if (failure.empty()) {
        return 0;
    }
    InterruptGate& gate = InterruptGate::instance();
    gate.pass([&] {
        platform::print(failure);
        platform::Console::instance().flush();
    });
    gate.endRun();
    return kFailure;
}

}  // namespace tavocal
