#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "platform/Console.h"
#include "support/ForkedRun.h"

namespace tavocal::test {

ToolResult runForked(const std::function<int()>& action) {
    platform::Console::instance().flush();
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        const int status = action();
        platform::Console::instance().flush();
        _exit(status);
    }
    close(ends[1]);
    ToolResult result;
    std::array<char, 4096> part{};
    for (ssize_t got = 0; (got = read(ends[0], part.data(), part.size())) > 0;) {
        result.output.append(part.data(), static_cast<std::size_t>(got));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

}  // namespace tavocal::test
