#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "platform/Event.h"
#include "platform/Interrupt.h"
#include "support/ForkedRun.h"

namespace tavocal::test {

TEST(InterruptPosixTest, SignalsThatAskForAnEnd) {
    const auto statusAfter = [](int signal, bool isIgnored) {
        return runForked([signal, isIgnored] {
                   std::signal(signal, isIgnored ? SIG_IGN : SIG_DFL);
                   platform::installInterruptHandler([](int number) { _exit(number); });
                   kill(getpid(), signal);
                   // A signal that arrives has the handler end the process meanwhile.
                   const bool isLost = isIgnored && signal != SIGINT;
                   const std::chrono::milliseconds time(isLost ? 1 : 10000);
                   EXPECT_FALSE(platform::makeSyncObject()->waitFor(time));
                   return 0;
               })
            .status;
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EQ(statusAfter(signal, false), signal);
        EXPECT_EQ(statusAfter(signal, true), signal == SIGINT ? SIGINT : 0);
    }
}

}  // namespace tavocal::test
