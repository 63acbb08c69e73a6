#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "platform/Console.h"
#include "support/TempFolder.h"

namespace tavocal::test {

TEST(ConsolePosixTest, WritesWithoutColourToAFileAndReadsLinesToTheEnd) {
    platform::Console& console = platform::Console::instance();
    testing::internal::CaptureStdout();
    console.write(L"\u00E9\u20AC");
    console.writeColoured(platform::kLightRed, "red");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xC3\xA9\xE2\x82\xACred");

    // A line is an answer once it is too long, and what more comes of it belongs to no other.
    const std::string longest(platform::kLongestLine, '\0');
    const TempFolder folder;
    const std::string typed =
        folder.write("typed", "one\r\n\ntwo\rthree\n" + longest.substr(1) + "\nnext\n" + longest +
                                  "more\nnext\n" + longest + "\nlast");
    const int before = dup(STDIN_FILENO);
    const int input = open(typed.c_str(), O_RDONLY);
    dup2(input, STDIN_FILENO);
    std::string line;
    for (const std::string& expected :
         {std::string("one"), std::string(), std::string("two\rthree"), longest.substr(1),
          std::string("next"), longest, std::string("next"), longest, std::string("last")}) {
        EXPECT_TRUE(console.readLine(line));
        EXPECT_EQ(line, expected);
    }
    EXPECT_FALSE(console.readLine(line));
    EXPECT_TRUE(close(STDIN_FILENO) == 0 && !console.readLine(line));
    dup2(before, STDIN_FILENO);
    close(before);
    close(input);
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
