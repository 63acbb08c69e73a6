#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "platform/ProcessStart.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

TEST(ProcessStartLinuxTest, RunsDetachedFromThisProcess) {
    const WorkingFolder folder;
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    folder.write("restart.bat",
                 "#!/bin/sh\n"
                 "cd /proc/$$ ; echo $# $(readlink fd/[012] fd/77) $(awk '/SigBlk/ {print $2} "
                 "/SigIgn/ {print substr($2, 13, 1)}' status) > $OLDPWD/pipe\n");
    // Neither what is missing nor what may not be executed starts or fails.
    platform::startDetached("missing.bat");
    platform::startDetached("restart.bat");
    ASSERT_EQ(chmod("restart.bat", 0755), 0);
    ASSERT_EQ(dup2(STDIN_FILENO, 77), 77);
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    const auto handler = std::signal(SIGPIPE, SIG_IGN);
    const int pipe = open("pipe", O_RDONLY | O_NONBLOCK);
    platform::startDetached("restart.bat");
    std::signal(SIGPIPE, handler);
    pthread_sigmask(SIG_UNBLOCK, &all, nullptr);
    pollfd waiting{pipe, POLLIN, 0};
    ASSERT_EQ(poll(&waiting, 1, 30000), 1);
    char line[200] = "";
    EXPECT_TRUE(read(pipe, line, sizeof(line) - 1) > 0 && close(pipe) == 0 && close(77) == 0);
    EXPECT_STREQ(line, "0 /dev/null /dev/null /dev/null 0000000000000000 0\n");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}

}  // namespace tavocal::test
