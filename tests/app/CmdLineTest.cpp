#include "app/CmdLine.h"

#include "app/CmdLineFixture.h"
#include "app/UsageText.h"
#include "base/Failures.h"

namespace tavocal::test {

using CmdLineTest = CmdLineFixture;

namespace {

template <typename Action>
std::string messageOf(Action action) {
    try {
        action();
    } catch (const CmdLineException& failure) {
        return failure.what();
    }
    return {};
}

}  // namespace

TEST_F(CmdLineTest, ImpossibleArgumentsAreRefused) {
    const char* argv[] = {"tavocal.exe", nullptr};
    EXPECT_EQ(messageOf([this] { cmdLine.parse(1, nullptr); }), "No Command line arguments");
    EXPECT_EQ(messageOf([&] { cmdLine.parse(-1, argv); }), "Negative number of arguments");
    EXPECT_EQ(messageOf([&] { cmdLine.parse(0, argv + 1); }), "No command was specified");
    EXPECT_EQ(messageOf([&] { cmdLine.parse(3, argv); }), "No command was specified");
}

TEST_F(CmdLineTest, OptionsAreLookedUpOneByOne) {
    const struct {
        const char* line;
        const char* message;
    } kRows[] = {
        {"Calibrate AG", "Invalid argument: 'Calibrate'"},
        {"-UpdateTavo AG -Calibrate AG", "Invalid argument: 'AG'"},
        {"''", "Invalid argument: ''"},
        {"-", "Invalid argument: ''"},
        {"--Calibrate AG", "Invalid argument: '-Calibrate'"},
        {"-Calibrat AG", "Invalid argument: 'Calibrat'"},
        {"-CalibrateX AG", "Invalid argument: 'CalibrateX'"},
        {"-Calibrate A -calibrate G", "The 'calibrate' argument was already specified"},
        {"-MagTest -MAGTEST", "The 'MAGTEST' argument was already specified"},
        {"-Calibrate -UpdateTavo", "Could not find value for 'Calibrate'"},
        {"-UpdateTavo -caliBRATE", "Could not find value for 'caliBRATE'"},
        {"-Calibrate A -NoEnter -5", "Could not find value for 'NoEnter'"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

TEST_F(CmdLineTest, ValuesAreJudgedWithTheirOption) {
    const struct {
        const char* line;
        const char* message;
    } kRows[] = {
        {"-calibrate A<G", "Invalid value of: 'calibrate', forbidden character found."},
        {"-Calibrate A>G", "Invalid value of: 'Calibrate', forbidden character found."},
        {"-ExportXml a|b.xml", "Invalid value of: 'ExportXml', forbidden character found."},
        {"-importxml ?.xml", "Invalid value of: 'importxml', forbidden character found."},
        {"-ExportAllFiles *", "Invalid value of: 'ExportAllFiles', forbidden character found."},
        {"-IMPORTXML $/no.xml", "Invalid value of: 'IMPORTXML', file does not exist."},
        {"-ImportXml $/no.bin", "Invalid value of: 'ImportXml', file does not exist."},
        {"-ImportXml ''", "Invalid value of: 'ImportXml', file does not exist."},
        {"-ImportXml $", "Invalid value of: 'ImportXml', file does not exist."},
        {"-auto $/no.txt", "Invalid value of: 'auto', file does not exist."},
        {"-NoEnter 12a", "Invalid value of: 'NoEnter', only positive integer is accepted."},
        {"-noEnter +5", "Invalid value of: 'noEnter', only positive integer is accepted."},
        {"-SamplingInterval 1.5",
         "Invalid value of: 'SamplingInterval', only positive integer is accepted."},
        {"-DumpPrefix a/b", "Invalid value of: 'DumpPrefix', prefix ought not contain directory"},
        {"-dumpprefix a\\b", "Invalid value of: 'dumpprefix', prefix ought not contain directory"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

TEST_F(CmdLineTest, ValueLengthIsLimited) {
    const std::string longest(255, 'o');
    EXPECT_EQ(failureOf("-MagTest -ExportAllFiles " + longest), "");
    EXPECT_EQ(cmdLine.value("ExportAllFiles"), longest);
    EXPECT_EQ(failureOf("-MagTest -exportAllFiles *" + longest),
              "Invalid value of: 'exportAllFiles', length exceeds 255");
}

TEST_F(CmdLineTest, NamesMatchWithoutCaseAndValuesByTheTablesSpelling) {
    ASSERT_EQ(failureOf("-calibrate agm -UPDATETAVO"), "");
    EXPECT_EQ(cmdLine.program(), "C:\\tools\\tavocal.exe");
    EXPECT_TRUE(cmdLine.hasOption("Calibrate"));
    EXPECT_TRUE(cmdLine.hasOption("UPDATEtavo"));
    EXPECT_FALSE(cmdLine.hasOption("MagTest"));
    EXPECT_EQ(cmdLine.value("Calibrate"), "agm");
    EXPECT_EQ(cmdLine.value("calibrate"), "");
    EXPECT_EQ(cmdLine.value("UpdateTavo"), "");
    EXPECT_EQ(cmdLine.value("ExportXml"), "");
    ASSERT_EQ(cmdLine.parsedOptions().size(), 2U);
    EXPECT_EQ(cmdLine.parsedOptions()[0].name, "Calibrate");
    EXPECT_EQ(cmdLine.parsedOptions()[1].name, "UpdateTavo");
}

TEST_F(CmdLineTest, CopiesAndLaterLinesStandAlone) {
    ASSERT_EQ(failureOf("-ExportXml a.xml"), "");
    const CmdLine copy = cmdLine;
    ASSERT_EQ(failureOf("-MagTest -ExportAllFiles ''"), "");
    EXPECT_FALSE(cmdLine.hasOption("ExportXml"));
    EXPECT_EQ(copy.value("ExportXml"), "a.xml");
    EXPECT_EQ(copy.program(), cmdLine.program());
    EXPECT_EQ(copy.optionTable().size(), cmdLine.optionTable().size());
}

TEST_F(CmdLineTest, UsageText) {
    EXPECT_EQ(cmdLine.usage("C:\\my tools\\tavocal.exe"), kUsageText);
    EXPECT_EQ(cmdLine.usage("tavocal.exe"), kUsageText);
    // A slash separates no folder here.
    EXPECT_TRUE(cmdLine.usage("./tavocal").find("\n./tavocal -MagTest ") != std::string::npos);
}

}  // namespace tavocal::test
