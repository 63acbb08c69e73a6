#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>

#include "app/Entry.h"
#include "base/Text.h"
#include "support/SimulatedFirmware.h"
#include "support/TempFolder.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

namespace {

// Runs the program on a still device until its screen shows the text, and interrupts it.
[[noreturn]] void interruptAt(const std::string& text, std::vector<std::string> words) {
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_BLOCK, &interrupt, nullptr);
    int keys[2];
    if (pipe(keys) != 0 || dup2(keys[0], STDIN_FILENO) < 0 ||
        std::freopen("screen.txt", "w", stdout) == nullptr) {
        std::exit(1);
    }
    const SimulatedFirmware firmware({});
    std::thread([text] {
        while (!contains(fileContent("screen.txt"), text)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        kill(getpid(), SIGINT);
    }).detach();
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    std::exit(100 + runProgram(static_cast<int>(argv.size()), argv.data()));
}

}  // namespace

TEST(EntryTest, AnInterruptEndsTheRunAndLeavesWhatWasSampled) {
    const std::vector<std::string> words = {
        "tavocal", "-Calibrate", "A", "-UpdateTavo", "-NoEnter", "1", "-ExportAllFiles", "out"};
    const std::vector<std::string> withPrompt = {"tavocal", "-Calibrate", "A", "-ExportAllFiles",
                                                 "out"};
    const std::string received = "Interrupt signal (2) received.\n";
    for (const bool atPrompt : {true, false}) {
        const WorkingFolder folder;
        EXPECT_EXIT(
            interruptAt(atPrompt ? "Place" : "STEP 1 PASSED", atPrompt ? withPrompt : words),
            ::testing::ExitedWithCode(2), "");
        const std::string screen = fileContent("screen.txt");
        EXPECT_EQ(screen.substr(std::min(screen.size(), screen.find(received))),
                  received + (atPrompt ? "" : "Saving data dump to file out\\dataDump\n") +
                      "Abort request\n")
            << screen;
        EXPECT_EQ(std::filesystem::exists("out/dataDumpAccelerometer.csv"), !atPrompt);
    }
}

}  // namespace tavocal::test
