#pragma once

namespace tavocal {

class CmdLine;

// Judges a whole command line, each of whose options is right by itself: file extensions, which
// options go together, and the sensor text. Throws CmdLineException for the first rule that is
// broken.
void checkCmdLineRules(const CmdLine& cmdLine);

}  // namespace tavocal
