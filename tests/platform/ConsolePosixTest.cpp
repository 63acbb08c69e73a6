#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/Console.h"

namespace tavocal::test {

TEST(ConsolePosixTest, WritesWithoutColourToAFileAndReadsLinesToTheEnd) {
    platform::Console& console = platform::Console::instance();
    testing::internal::CaptureStdout();
    console.write(L"\u00E9\u20AC");
    console.writeColoured(platform::kLightRed, "red");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xC3\xA9\xE2\x82\xACred");

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int before = dup(STDIN_FILENO);
    dup2(ends[0], STDIN_FILENO);
    const std::string typed = "one\r\n\ntwo\rthree\nlast";
    EXPECT_GT(write(ends[1], typed.data(), typed.size()), 0);
    close(ends[1]);
    std::string line;
    for (const char* expected : {"one", "", "two\rthree", "last"}) {
        EXPECT_TRUE(console.readLine(line));
        EXPECT_EQ(line, expected);
    }
    EXPECT_FALSE(console.readLine(line));
    EXPECT_TRUE(close(STDIN_FILENO) == 0 && !console.readLine(line));
    dup2(before, STDIN_FILENO);
    close(before);
    close(ends[0]);
}

// In a process of its own, since the console looks only once whether it is a terminal.
TEST(ConsolePosixTest, ShowsColoursOnATerminal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto showOnTerminal = [] {
        const int reader = posix_openpt(O_RDWR | O_NOCTTY);
        unlockpt(reader);
        std::fflush(stdout);
        dup2(open(ptsname(reader), O_RDWR | O_NOCTTY), STDOUT_FILENO);
        platform::Console& console = platform::Console::instance();
        console.writeColoured(platform::kLightGreen, "good");
        console.writeColoured(platform::kLightRed, "bad");
        console.write("\n");
        console.flush();
        for (char byte = 0; byte != '\n' && read(reader, &byte, 1) == 1;) {
            std::cerr << byte;
        }
        _exit(0);
    };
    EXPECT_EXIT(showOnTerminal(), testing::ExitedWithCode(0),
                "\x1b.92mgood\x1b.0m\x1b.91mbad\x1b.0m");
}

}  // namespace tavocal::test
