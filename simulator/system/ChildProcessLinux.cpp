#include <fcntl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "simulator/system/ChildProcess.h"

namespace tavocal::simulator {

namespace {

constexpr int kCannotStart = 127;
constexpr int kSignalBase = 128;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

bool isProgram(const std::string& path) {
    return access(path.c_str(), X_OK) == 0;
}

std::string ownFolder() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string own(path.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return own.substr(0, own.rfind('/') + 1);
}

// The folders of a search path; an empty one is the working directory.
std::string findOnPath(const std::string& name) {
    const char* variable = std::getenv("PATH");
    std::string folders = variable == nullptr ? "" : variable;
    while (!folders.empty()) {
        const std::size_t end = std::min(folders.find(':'), folders.size());
        const std::string path = (end > 0 ? folders.substr(0, end) : ".") + "/" + name;
        if (isProgram(path)) {
            return path;
        }
        folders.erase(0, end + 1);
    }
    return {};
}

std::string findProgram(const std::string& name) {
    if (name.find('/') != std::string::npos) {
        return name;
    }
    if (std::string path = findOnPath(name); !path.empty()) {
        return path;
    }
    for (const char* folder : {"", "../"}) {
        const std::string path = ownFolder() + folder + name;
        if (isProgram(path)) {
            return path;
        }
    }
    throw std::runtime_error("There is no program " + name);
}

// Two ends: what is written to the second can be read from the first.
using Ends = std::array<int, 2>;

Ends makePipe() {
    Ends ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail("Can't make a pipe");
    }
    return ends;
}

// A terminal that passes on what is printed as it is.
Ends makeTerminal() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
        fail("Can't make a terminal");
    }
    std::array<char, 128> name{};
    if (ptsname_r(master, name.data(), name.size()) != 0) {
        fail("Can't make a terminal");
    }
    const int slave = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0) {
        fail("Can't open a terminal");
    }
    termios settings{};
    tcgetattr(slave, &settings);
    cfmakeraw(&settings);
    tcsetattr(slave, TCSANOW, &settings);
    return {master, slave};
}

[[noreturn]] void becomeProgram(const char* path, char* const* words, int input, int output) {
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    ::signal(SIGXFSZ, SIG_DFL);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    execv(path, words);
    _exit(kCannotStart);
}

void setNonBlocking(int file) {
    fcntl(file, F_SETFL, fcntl(file, F_GETFL) | O_NONBLOCK);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words, bool colours) {
    const std::string path = findProgram(words[0]);
    std::vector<std::string> copies = words;
    std::vector<char*> pointers;
    for (std::string& word : copies) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);

    const Ends input = makePipe();
    const Ends output = colours ? makeTerminal() : makePipe();
    process = fork();
    if (process == 0) {
        becomeProgram(path.c_str(), pointers.data(), input[0], output[1]);
    }
    close(input[0]);
    close(output[1]);
    inputFile = input[1];
    outputFile = output[0];
    if (process < 0) {
        fail("Can't start " + path);
    }
    // On both sides, so that neither has to wait for the other.
    setpgid(process, process);
    setNonBlocking(inputFile);
    setNonBlocking(outputFile);
}

ChildProcess::~ChildProcess() {
    if (process > 0) {
        kill(process, SIGKILL);
        while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    for (const int file : {inputFile, outputFile}) {
        if (file >= 0) {
            close(file);
        }
    }
}

// A terminal whose other side is closed fails where a pipe ends.
std::string ChildProcess::takeOutput() {
    std::array<char, 4096> part{};
    const ssize_t got = outputFile < 0 ? -1 : read(outputFile, part.data(), part.size());
    if (got > 0) {
        return std::string(part.data(), static_cast<std::size_t>(got));
    }
    const bool nothingYet = got < 0 && (errno == EAGAIN || errno == EINTR);
    if (!nothingYet && outputFile >= 0) {
        close(outputFile);
        outputFile = -1;
    }
    return {};
}

// What nobody reads any more is lost.
void ChildProcess::type(std::string_view text) {
    [[maybe_unused]] const ssize_t written = write(inputFile, text.data(), text.size());
}

void ChildProcess::signal(int number) {
    if (process > 0) {
        kill(process, number);
    }
}

bool ChildProcess::hasEnded() {
    int result = 0;
    if (process > 0 && waitpid(process, &result, WNOHANG) == process) {
        process = -1;
        exitStatus = WIFEXITED(result) ? WEXITSTATUS(result) : kSignalBase + WTERMSIG(result);
    }
    return process < 0;
}

}  // namespace tavocal::simulator
