#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/ProcessStart.h"

namespace tavocal::platform {

namespace {

bool isExecutableFile(const char* path) {
    struct stat info {};
    return stat(path, &info) == 0 && S_ISREG(info.st_mode) && access(path, X_OK) == 0;
}

void closeInheritedFiles() {
    constexpr int kFirst = STDERR_FILENO + 1;
#ifdef __linux__
    if (close_range(kFirst, ~0U, 0) == 0) {
        return;
    }
#endif
    // Where files can't be closed by range; a higher limit than this is never used up.
    constexpr int kLast = 65536;
    for (int file = kFirst; file < kLast; ++file) {
        close(file);
    }
}

// A pipe that the caller's standard output goes to would stay open as long as the process lives.
void detachStandardFiles() {
    const int null = open("/dev/null", O_RDWR);
    if (null >= 0) {
        dup2(null, STDIN_FILENO);
        dup2(null, STDOUT_FILENO);
        dup2(null, STDERR_FILENO);
    }
}

// The interrupt signal is blocked, and failing writes are no signals in this process.
void restoreSignals() {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    signal(SIGXFSZ, SIG_DFL);
}

// Runs in the middle process. Between fork and exec only what is safe in a signal handler may be
// called, as another thread may have held any lock at the time of the fork.
[[noreturn]] void runGrandchild(const char* path) {
    setsid();
    if (fork() != 0) {
        _exit(0);
    }
    restoreSignals();
    detachStandardFiles();
    closeInheritedFiles();
    const char* const arguments[] = {path, nullptr};
    // execv takes its arguments as non-const for historic reasons and does not write to them.
    execv(path, const_cast<char* const*>(arguments));
    _exit(127);
}

}  // namespace

void startDetached(const std::string& fileName) {
    const std::string path = "./" + fileName;
    if (path.find('\0') != std::string::npos || !isExecutableFile(path.c_str())) {
        return;
    }
    const pid_t middle = fork();
    if (middle == 0) {
        runGrandchild(path.c_str());
    }
    // The middle process ends at once, and with it the only tie to the one that goes on.
    while (middle > 0 && waitpid(middle, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace tavocal::platform
