#pragma once

namespace tavocal {

// The whole program: banner, command line, run, and the exit status. 0 for a finished run, -1 for
// any failure; an interrupt ends the process with 2.
int runProgram(int argc, char** argv);

}  // namespace tavocal
