#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "support/ToolRun.h"

namespace tavocal::test {

namespace {

constexpr int kCannotStart = 127;
// A program that is silent for so long hangs.
constexpr int kSilenceMs = 20000;

[[noreturn]] void becomeTool(const std::string& folder, std::vector<char*>& argv, int output) {
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (chdir(folder.c_str()) != 0 || dup2(nothing, STDIN_FILENO) < 0 ||
        dup2(output, STDOUT_FILENO) < 0 || dup2(output, STDERR_FILENO) < 0) {
        _exit(kCannotStart);
    }
    execv(argv[0], argv.data());
    _exit(kCannotStart);
}

// What the writer prints until it ends. One that hangs is interrupted, then killed.
std::string readAll(int descriptor, pid_t writer, const std::string& interruptAt) {
    std::string text;
    std::array<char, 4096> part{};
    bool interrupted = interruptAt.empty();
    for (int silences = 0; silences < 3;) {
        pollfd output{descriptor, POLLIN, 0};
        if (poll(&output, 1, kSilenceMs) == 0) {
            kill(writer, silences++ == 0 ? SIGINT : SIGKILL);
            continue;
        }
        const ssize_t got = read(descriptor, part.data(), part.size());
        if (got <= 0) {
            return text;
        }
        text.append(part.data(), static_cast<std::size_t>(got));
        if (!interrupted && text.find(interruptAt) != std::string::npos) {
            kill(writer, SIGINT);
            interrupted = true;
        }
    }
    return text + "(hangs)\n";
}

}  // namespace

ToolResult runProgram(const std::string& folder, std::vector<std::string> words,
                      const std::string& interruptAt) {
    std::vector<char*> argv;
    for (std::string& word : words) {
        word = word == "tavocal" ? TAVOCAL_PROGRAM : word == "tavosim" ? TAVOSIM_PROGRAM : word;
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        becomeTool(folder, argv, ends[1]);
    }
    close(ends[1]);
    ToolResult result;
    result.output = readAll(ends[0], child, interruptAt);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

}  // namespace tavocal::test
