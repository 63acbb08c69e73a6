#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "app/Entry.h"
#include "base/Text.h"
#include "support/SimulatedFirmware.h"
#include "support/TempFolder.h"
#include "support/ToolRun.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

namespace {

// Runs the program on a still device until its screen shows the text, and interrupts it.
[[noreturn]] void interruptAt(const std::string& text, const std::string& keys) {
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_BLOCK, &interrupt, nullptr);
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[0], STDIN_FILENO) < 0 ||
        write(ends[1], keys.data(), keys.size()) < 0 ||
        std::freopen("screen.txt", "w", stdout) == nullptr) {
        std::exit(1);
    }
    const SimulatedFirmware firmware({});
    std::thread([text] {
        while (!contains(fileContent("screen.txt"), text)) {
            std::this_thread::yield();
        }
        kill(getpid(), SIGINT);
    }).detach();
    std::array<std::string, 5> words = {"tavocal", "-Calibrate", "A", "-ExportAllFiles", "out"};
    std::array<char*, 5> argv{};
    std::transform(words.begin(), words.end(), argv.begin(),
                   [](auto& word) { return word.data(); });
    std::exit(100 + runProgram(5, argv.data()));
}

}  // namespace

TEST(EntryTest, AnInterruptEndsTheRunAndLeavesWhatWasSampled) {
    for (const bool samples : {false, true}) {
        const WorkingFolder folder;
        EXPECT_EXIT(interruptAt(samples ? "STEP 1 PASSED" : "Place", samples ? "\n" : ""),
                    ::testing::ExitedWithCode(2), "");
        EXPECT_EQ(from(fileContent("screen.txt"), "Interrupt"),
                  std::string("Interrupt signal (2) received.\n") +
                      (samples ? "Saving data dump to file out\\dataDump\n" : "") +
                      "Abort request\n");
        EXPECT_EQ(std::filesystem::exists("out/dataDumpAccelerometer.csv"), samples);
    }
}

}  // namespace tavocal::test
