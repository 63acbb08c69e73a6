#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "platform/ProcessStart.h"
#include "support/WorkingFolder.h"

namespace tavocal::platform {
namespace {

constexpr const char* kFile = "restart.bat";

void writeScript(const std::string& content) {
    std::ofstream(kFile) << content;
    chmod(kFile, 0755);
}

// Everything that is written into the pipe until its last writer is gone.
std::string readAll(int pipe) {
    std::string all;
    char part[256];
    pollfd waiting{pipe, POLLIN, 0};
    constexpr int kPatience = 30000;
    while (::poll(&waiting, 1, kPatience) > 0) {
        const ssize_t got = ::read(pipe, part, sizeof(part));
        if (got <= 0) {
            break;
        }
        all.append(part, static_cast<std::size_t>(got));
    }
    return all;
}

TEST(ProcessStartTest, RunsDetachedFromThisProcess) {
    const WorkingFolder folder;
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    writeScript(
        "#!/bin/sh\n"
        "[ -e /proc/$$/fd/77 ] && inherited=inherited\n"
        "echo $# $inherited $(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2) > pipe\n");
    ASSERT_EQ(::dup2(STDIN_FILENO, 77), 77);
    const int pipe = ::open("pipe", O_RDONLY | O_NONBLOCK);
    startDetached(kFile);
    EXPECT_EQ(readAll(pipe), "0 /dev/null /dev/null /dev/null\n");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
    EXPECT_EQ(errno, ECHILD);
    ::close(pipe);
    ::close(77);
}

TEST(ProcessStartTest, WhatIsNoExecutableFileStartsNothing) {
    const WorkingFolder folder;
    startDetached(kFile);
    std::filesystem::create_directory(kFile);
    startDetached(kFile);
    std::filesystem::remove(kFile);
    std::ofstream(kFile) << "not executable";
    startDetached(kFile);
    startDetached(std::string("a\0b", 3));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(ProcessStartTest, NoShellStepsInForAFileWithoutAnInterpreter) {
    const WorkingFolder folder;
    writeScript("touch started\n");
    // The orphan comes to this process, which then sees its end.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    startDetached(kFile);
    int status = 0;
    EXPECT_GT(waitpid(-1, &status, 0), 0);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 127);
    EXPECT_FALSE(std::filesystem::exists("started"));
}

}  // namespace
}  // namespace tavocal::platform
