#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>

#include "app/InterruptGate.h"
#include "app/Interruption.h"
#include "base/Patience.h"
#include "platform/Console.h"
#include "platform/Event.h"
#include "platform/Files.h"
#include "platform/UnfinishedFiles.h"
#include "support/ForkedRun.h"
#include "support/Lines.h"
#include "support/TempFolder.h"

namespace tavocal::test {

namespace {

using platform::print;
using std::chrono::milliseconds;

constexpr int kSignal = 15, kOwnStatus = 7;
// Short where something hangs, so long that nothing else is cut short by a busy computer.
constexpr Interruption::Bounds kShort{milliseconds(20), milliseconds(200), milliseconds(300)};
constexpr Interruption::Bounds kUsual;

InterruptGate& gate() {
    return InterruptGate::instance();
}

[[noreturn]] void hang() {
    for (;;) {
        pause();
    }
}

// Returns once the interrupt has come, which may have printed its first line or not.
void interrupt(const std::function<void()>& stopRun, Interruption::Bounds bounds) {
    std::thread([stopRun, bounds] {
        Interruption(gate(), stopRun, bounds).endProcess(kSignal);
    }).detach();
}

void awaitInterrupt() {
    while (!Patience::instance().hasEnded()) {
        std::this_thread::yield();
    }
}

void makeHalfFile() {
    platform::UnfinishedFiles::instance().add([] {
        close(creat("dump.csv.new", 0600));
        return "dump.csv.new";
    });
}

void fillStandardOutput() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    while (write(ends[1], "x", 1) == 1) {
    }
    fcntl(ends[1], F_SETFL, 0);
    dup2(ends[1], STDOUT_FILENO);
}

using Action = std::function<void()>;

// A moment, what the main thread does then, and how the process ends.
struct Row {
    const char* moment;
    std::function<void(const Action& interruptNow)> mainThread;
    Action stopRun;
    int status;
    std::string screen;  // but for the interrupt's first line
    Interruption::Bounds bounds = kUsual;
};

const Action kStops = [] { print("stopped\n"); };

const std::vector<Row> kRows = {
    {"nothing that it waits for", [](const Action& interruptNow) { interruptNow(), hang(); },
     kStops, kSignal, "stopped\nAbort request\n"},
    {"a failure to stop", [](const Action& interruptNow) { interruptNow(), hang(); },
     [] { throw std::runtime_error("no stop"); }, kSignal, "no stop\nAbort request\n"},
    {"blocks on their way",
     [](const Action& interruptNow) {
         gate().pass([&] { interruptNow(), awaitInterrupt(), print("whole\n"); });
         print("the main thread goes on\n");
     },
     kStops, kSignal, "whole\nstopped\nAbort request\n"},
    {"blocks on their way, and the firmware falls silent",
     [](const Action& interruptNow) {
         gate().pass([&] { interruptNow(), awaitInterrupt(), throw std::runtime_error("silent"); });
     },
     kStops, kSignal, "stopped\nAbort request\n"},
    {"work that begins later",
     [](const Action& interruptNow) {
         interruptNow(), awaitInterrupt();
         gate().pass([] { print("the main thread goes on\n"); });
     },
     kStops, kSignal, "stopped\nAbort request\n"},
    {"a run that ends later",
     [](const Action& interruptNow) { interruptNow(), awaitInterrupt(), gate().endRun(); }, kStops,
     kSignal, "stopped\nAbort request\n"},
    {"a dump that nobody reads",
     [](const Action& interruptNow) {
         gate().pass([&] { makeHalfFile(), interruptNow(), hang(); });
     },
     kStops, kSignal, "Abort request\n", kShort},
    {"a stop that hangs",
     [](const Action& interruptNow) { makeHalfFile(), interruptNow(), hang(); }, hang, kSignal, "",
     kShort},
    {"a console that nobody reads",
     [](const Action& interruptNow) { fillStandardOutput(), interruptNow(), hang(); }, kStops,
     kSignal, "", kShort},
    {"a run that is over",
     [](const Action& interruptNow) {
         gate().endRun(), interruptNow();
         EXPECT_FALSE(platform::makeSyncObject()->waitFor(milliseconds(5)));
         print("times\n");
     },
     kStops, kOwnStatus, "times\n"},
    {"a run that is over, but for times that nobody reads",
     [](const Action& interruptNow) { gate().endRun(), interruptNow(), hang(); }, kStops, kSignal,
     "", kShort},
};

}  // namespace

TEST(InterruptionPosixTest, EndsTheProcessAtAnyMoment) {
    for (const Row& row : kRows) {
        const TempFolder folder;
        const ToolResult result = runForked([&] {
            EXPECT_EQ(chdir(folder.path().c_str()), 0);
            row.mainThread([&] { interrupt(row.stopRun, row.bounds); });
            return kOwnStatus;
        });
        EXPECT_EQ(result.status, row.status) << row.moment;
        const std::string screen =
            replaceAll(result.output, "Interrupt signal (15) received.\n", "");
        EXPECT_EQ(screen, row.screen) << row.moment;
        EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << row.moment;
    }
}

TEST(InterruptionPosixTest, NothingIsPrintedBehindTheLastLine) {
    const ToolResult result = runForked([] {
        interrupt(kStops, kUsual);
        for (;;) {
            print("busy\n");
            platform::Console::instance().flush();
        }
        return kOwnStatus;
    });
    EXPECT_EQ(result.status, kSignal);
    EXPECT_TRUE(result.output.ends_with("Abort request\n")) << result.output.size();
}

// The main thread never waits for the console here, so it may be anywhere in a file.
TEST(InterruptionPosixTest, FilesAreOldOrNew) {
    const std::string older(300000, 'o'), newer(300000, 'n');
    for (int round = 0; round < 20; ++round) {
        const TempFolder folder;
        const std::string path = folder.path("file");
        const ToolResult result = runForked([&] {
            interrupt(kStops, kUsual);
            for (;;) {
                EXPECT_EQ(platform::writeFile(path, older), "");
                EXPECT_EQ(platform::writeFile(path, newer), "");
            }
            return kOwnStatus;
        });
        EXPECT_EQ(result.status, kSignal);
        for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
            EXPECT_EQ(file.path(), path);
            const std::string content = fileContent(file.path());
            EXPECT_TRUE(content == older || content == newer) << content.size();
        }
    }
}

TEST(InterruptionPosixTest, EachWaitHasItsTimeAndAllEndWithin10Seconds) {
    EXPECT_LT(Patience::Bounds{}.underWay, kUsual.work);
    EXPECT_LT(kUsual.work, kUsual.order);
    EXPECT_LT(kUsual.order, kUsual.removal);
    EXPECT_LT(kUsual.removal, std::chrono::seconds(10));
}

}  // namespace tavocal::test
