#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "platform/ProcessStart.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

namespace {

void makeExecutable(const WorkingFolder& folder, const std::string& content) {
    chmod(folder.write("restart.bat", content).c_str(), 0755);
}

}  // namespace

TEST(ProcessStartLinuxTest, RunsDetachedFromThisProcess) {
    const WorkingFolder folder;
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    makeExecutable(folder,
                   "#!/bin/sh\n"
                   "[ -e /proc/$$/fd/77 ] && inherited=inherited\n"
                   "signals=$(grep -E 'SigBlk|SigIgn' /proc/$$/status | tr -d '\\n\\t')\n"
                   "echo $# $inherited $(readlink /proc/$$/fd/[012]) $signals > pipe\n");
    ASSERT_EQ(dup2(STDIN_FILENO, 77), 77);
    const auto handler = std::signal(SIGPIPE, SIG_IGN);
    const int pipe = open("pipe", O_RDONLY | O_NONBLOCK);
    platform::startDetached("restart.bat");
    std::signal(SIGPIPE, handler);
    pollfd waiting{pipe, POLLIN, 0};
    ASSERT_EQ(poll(&waiting, 1, 30000), 1);
    char line[200] = "";
    EXPECT_GT(read(pipe, line, sizeof(line) - 1), 0);
    EXPECT_STREQ(
        line, "0 /dev/null /dev/null /dev/null SigBlk:0000000000000000SigIgn:0000000000000000\n");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
    EXPECT_EQ(errno, ECHILD);
    close(pipe);
    close(77);
}

TEST(ProcessStartLinuxTest, WhatIsNoExecutableFileStartsNothingAndNoShellStepsIn) {
    const WorkingFolder folder;
    platform::startDetached("restart.bat");
    platform::startDetached(std::string("a\0b", 3));
    folder.write("plain.bat", "not executable");
    platform::startDetached("plain.bat");
    std::filesystem::create_directory("folder.bat");
    platform::startDetached("folder.bat");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    // Without an interpreter. The orphan comes to this process, which then sees its end.
    makeExecutable(folder, "touch started\n");
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    platform::startDetached("restart.bat");
    int status = 0;
    EXPECT_GT(waitpid(-1, &status, 0), 0);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
    EXPECT_EQ(WEXITSTATUS(status), 127);
    EXPECT_FALSE(std::filesystem::exists("started"));
}

}  // namespace tavocal::test
