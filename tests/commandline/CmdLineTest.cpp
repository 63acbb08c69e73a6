#include "commandline/CmdLine.h"

#include "commandline/CmdLineFixture.h"

namespace tavocal::test {

using CmdLineTest = CmdLineFixture;

TEST_F(CmdLineTest, ImpossibleArgumentsAreRefused) {
    const char* argv[] = {"tavocal.exe", nullptr};
    const auto parsed = [this](int argc, const char* const* words) {
        return messageOf<CmdLineException>([&] { cmdLine.parse(argc, words); });
    };
    EXPECT_EQ(parsed(1, nullptr), "No Command line arguments");
    EXPECT_EQ(parsed(-1, argv), "Negative number of arguments");
    EXPECT_EQ(parsed(0, argv + 1), "No command was specified");
    EXPECT_EQ(parsed(3, argv), "No command was specified");
}

TEST_F(CmdLineTest, NamesMatchWithoutCaseAndValuesByTheTablesSpelling) {
    ASSERT_EQ(failureOf("-calibrate agm -UPDATETAVO"), kNoFailure);
    EXPECT_EQ(cmdLine.program(), "C:\\tools\\tavocal.exe");
    EXPECT_TRUE(cmdLine.hasOption("UPDATEtavo"));
    EXPECT_EQ(cmdLine.value("Calibrate"), "agm");
    EXPECT_EQ(cmdLine.value("calibrate"), "");
    // A later line takes the place of the earlier one.
    ASSERT_EQ(failureOf("-MagTest"), kNoFailure);
    EXPECT_FALSE(cmdLine.hasOption("Calibrate"));
    const std::string longest(255, 'o');
    EXPECT_EQ(failureOf("-MagTest -ExportAllFiles " + longest), kNoFailure);
    EXPECT_EQ(failureOf("-MagTest -exportAllFiles *" + longest),
              "Invalid value of: 'exportAllFiles', length exceeds 255");
}

}  // namespace tavocal::test
