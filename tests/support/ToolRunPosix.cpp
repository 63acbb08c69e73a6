#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>

#include "support/ToolRun.h"

namespace tavocal::test {

namespace {

constexpr int kCannotStart = 127;

[[noreturn]] void becomeTool(const std::string& folder, std::vector<char*>& argv, int output) {
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (chdir(folder.c_str()) != 0 || dup2(nothing, STDIN_FILENO) < 0 ||
        dup2(output, STDOUT_FILENO) < 0 || dup2(output, STDERR_FILENO) < 0) {
        _exit(kCannotStart);
    }
    execv(argv[0], argv.data());
    _exit(kCannotStart);
}

std::string readAll(int descriptor, pid_t writer, const std::string& interruptAt) {
    std::string text;
    std::array<char, 4096> part{};
    ssize_t got = 0;
    bool interrupted = interruptAt.empty();
    while ((got = read(descriptor, part.data(), part.size())) > 0) {
        text.append(part.data(), static_cast<std::size_t>(got));
        if (!interrupted && text.find(interruptAt) != std::string::npos) {
            kill(writer, SIGINT);
            interrupted = true;
        }
    }
    return text;
}

ToolResult runTool(const std::string& folder, std::vector<std::string> words,
                   const std::string& interruptAt = {}) {
    std::vector<char*> argv;
    for (std::string& word : words) {
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

}  // namespace

ToolResult runTavocal(const std::string& folder, const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {TAVOCAL_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runTool(folder, words);
}

ToolResult runLive(const std::string& folder, const std::vector<std::string>& device,
                   const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {TAVOSIM_PROGRAM, "run"};
    words.insert(words.end(), device.begin(), device.end());
    words.insert(words.end(), {"--", TAVOCAL_PROGRAM});
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runTool(folder, words);
}

// A program behind "--" is the tool.
ToolResult runSimulator(const std::string& folder, const std::vector<std::string>& arguments,
                        const std::string& interruptAt) {
    std::vector<std::string> words = {TAVOSIM_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const auto separator = std::find(words.begin(), words.end(), "--");
    if (separator != words.end() && separator + 1 != words.end() && separator[1] == "tavocal") {
        separator[1] = TAVOCAL_PROGRAM;
    }
    return runTool(folder, words, interruptAt);
}

std::string from(const std::string& text, const std::string& begin) {
    const std::size_t at = text.find(begin);
    return at == std::string::npos ? std::string() : text.substr(at);
}

}  // namespace tavocal::test
