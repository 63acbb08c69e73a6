#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavocal::simulator {

// A program that runs beside this one, in a process group of its own, so that the terminal's
// interrupt comes to it only if it is passed on. Its standard error is this program's. It has to be
// waited for until it has ended.
class ChildProcess {
  public:
    // Starts it. The program is looked for on the search path, then beside this one and one folder
    // above. Its standard output comes through a terminal, with its colours, if `colours` says so.
    // Throws std::runtime_error if it isn't found or can't be started.
    ChildProcess(const std::vector<std::string>& words, bool colours);
    // Kills it if it hasn't ended.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // The descriptor on which its output can be waited for; -1 behind the end.
    int output() const { return outputFile; }
    // What it has printed; empty if there is nothing now.
    std::string takeOutput();

    // Types on its standard input.
    void type(std::string_view text);
    void signal(int number);

    // True once it has ended; does not wait.
    bool hasEnded();
    // 128 plus the number of a signal that has ended it. REQUIRES: it has ended.
    int status() const { return exitStatus; }

  private:
    int process = -1;  // -1 once it has ended
    int inputFile = -1;
    int outputFile = -1;
    int exitStatus = 0;
};

}  // namespace tavocal::simulator
