#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavocal::test {

// A run of the program as its user sees it, told in a text file:
//
//     What this run shows, in a line or two.
//
//     $ tavosim record --flow accelerometer --sensors A --out dumps
//     $ tavocal -CalibrateOffline A -ExportAllFiles out -UseRawData dumps
//     ...the whole screen...
//     exit status 0
//     $ report out/AGMLogFile.xml
//     ...its outline...
//     files left: out/AGMLogFile.xml out/resultCalibration.xml
//
// A line that begins with "$ " is a command; what follows up to the next one is what it shows.
// Words are separated by blanks; '...' holds a word together and \n in it is a line end. Commands:
//     tavocal, tavosim         the programs; tavosim alone shows nothing if all goes well
//     interrupt TEXT tavosim   a run that is interrupted once it has shown this text
//     write FILE [TEXT ...]    makes a file of these lines
//     folder NAME              makes a folder
//     remove NAME              removes a file or folder
//     cut FILE COUNT           keeps the first lines of a file
//     replace FILE OLD NEW     changes a text of a file, everywhere
//     show FILE                the file, as it stands
//     report FILE [TEXT ...]   the outline of an XML file (see outlineOfXml), or the lines of it
//                              that hold one of the texts
// "..." stands for the lines at the begin of a screen, or for the usage text, where the run before
// has shown the same; the banner goes without a mark. Everything happens in a new folder. Files
// left are those that the last run of a program made or changed. Numbers that noise decides are
// masked by "~".
class RunTranscript {
  public:
    explicit RunTranscript(std::string_view text);

    // Runs the commands anew: the file as it would have to be. Throws std::runtime_error on a
    // command that isn't known or can't be done.
    std::string play() const;

  private:
    std::string title;
    std::vector<std::string> commands;
};

}  // namespace tavocal::test
