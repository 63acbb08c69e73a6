#include "app/Entry.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string>

#include "app/CalibrationManager.h"
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
    // Held by an interrupt for good: its thread alone ends the process then.
    std::mutex endMutex;
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

[[noreturn]] void onInterrupt(int signal) {
    currentRun().endMutex.lock();
    printLine("Interrupt signal (" + std::to_string(signal) + ") received.");
    try {
        if (const auto manager = publishedManager()) {
            manager->abort();
        }
    } catch (const std::exception& exception) {
        // Whatever could not be saved, the process ends as the operator asked.
        printLine(exception.what());
    }
    printLine("Abort request");
    std::exit(signal);
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
    printRunTimes(runStartMs, manager->userWaitSeconds());
}

int runAndReport(CmdLine& cmdLine, int argc, char** argv) {
    try {
        run(cmdLine, argc, argv);
        return 0;
    } catch (const CmdLineException& exception) {
        printLine(exception.what());
        platform::print(cmdLine.usage(argc > 0 ? argv[0] : ""));
        platform::Console::instance().flush();
    } catch (const SmhiException& exception) {
        printLine(exception.what());
    } catch (const CalibrationException& exception) {
        printLine("Error:");
        printLine(exception.what());
    } catch (const std::bad_alloc&) {
        printLine("Out of memory");
    } catch (const std::exception& exception) {
        printLine(exception.what());
    }
    return kFailure;
}

}  // namespace

int runProgram(int argc, char** argv) {
    platform::openStandardFiles();
    platform::hardenProcess();
    platform::installInterruptHandler(onInterrupt);
    CmdLine cmdLine;
    const int status = runAndReport(cmdLine, argc, argv);
    const std::lock_guard<std::mutex> lock(currentRun().endMutex);
    return status;
}

}  // namespace tavocal
