#pragma once

namespace tavocal {

// The whole program: banner, command line, run, and the exit status. 0 for a finished run, -1 for
// any failure. A signal that asks the process to end has its own number as status, as long as the
// lines with the run's times aren't out.
int runProgram(int argc, char** argv);

}  // namespace tavocal
