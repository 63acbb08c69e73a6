#pragma once

#include <gtest/gtest.h>

#include <string>

#include "app/CmdLine.h"
#include "support/TempFolder.h"

namespace tavocal::test {

// Parses command lines that are written in one text: blanks separate the arguments, '' is an empty
// one, and $ is a folder with the files cal.xml, cal.bin, xml, light.txt, light.CSV and light.xml.
class CmdLineFixture : public ::testing::Test {
  protected:
    CmdLineFixture();

    // The message of the failure, in which $ stands for the folder again; empty if accepted.
    std::string failureOf(const std::string& line);

    CmdLine cmdLine;
    TempFolder folder;
};

}  // namespace tavocal::test
