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
    dup2(before, STDIN_FILENO);
    close(before);
    close(ends[0]);
}

}  // namespace tavocal::test
