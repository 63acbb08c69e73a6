#include "app/CmdLineRules.h"

#include "app/CmdLineFixture.h"

namespace tavocal::test {

using CmdLineRulesTest = CmdLineFixture;

struct RuleRow {
    const char* line;
    const char* message;
};

constexpr const char* kNoCommand = "No command was specified";
constexpr const char* kNoExport = "Missing export or update command";
constexpr const char* kPositiveTime =
    "Currently -NoEnter should come with positive integer argument representing milliseconds to "
    "wait";
constexpr const char* kPositiveInterval =
    "Invalid value of: 'SamplingInterval', only positive integer is accepted.";
constexpr const char* kOnlineInterval =
    "Invalid calibration argument, -SamplingInterval is not applied for offline calibration.";

TEST_F(CmdLineRulesTest, FileExtensions) {
    constexpr RuleRow kRows[] = {
        {"-ExportXml a.XML", ""},
        {"-ExportXml xml", ""},
        {"-ImportXml $/cal.xml", ""},
        {"-ImportXml $/cal.bin",
         "Invalid extension for file $/cal.bin. Valid extension is only xml"},
        // The folder counts as part of a value without a dot.
        {"-ImportXml $/xml", "Invalid extension for file $/xml. Valid extension is only xml"},
        {"-ExportXml a.xml.bak",
         "Invalid extension for file a.xml.bak. Valid extension is only xml"},
        {"-ExportXml ''", "Invalid extension for file . Valid extension is only xml"},
        {"-ExportXml a.", "Invalid extension for file a.. Valid extension is only xml"},
        {"-Calibrate ALS -UpdateTavo -Auto $/light.txt", ""},
        {"-Calibrate ALS -UpdateTavo -Auto $/light.CSV", ""},
        {"-Calibrate ALS -UpdateTavo -Auto $/light.xml",
         "Invalid extension for file $/light.xml. Valid extension is only txt, or csv"},
        // Import comes first, then Auto, then export, wherever they stand.
        {"-ExportXml a.b -Auto $/light.xml -ImportXml $/cal.bin",
         "Invalid extension for file $/cal.bin. Valid extension is only xml"},
        {"-ExportXml a.b -Auto $/light.xml",
         "Invalid extension for file $/light.xml. Valid extension is only txt, or csv"},
    };
    for (const RuleRow& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

TEST_F(CmdLineRulesTest, CommandsOfOneFamily) {
    constexpr RuleRow kRows[] = {
        {"", kNoCommand},
        {"-ExportAllFiles out", kNoCommand},
        {"-UpdateTavo -Minimal -FourSteps", kNoCommand},
        {"-Calibrate AG -TestCalibration AG",
         "Invalid combination of commands. The Calibrate argument cannot be used together with "
         "TestCalibration"},
        {"-testcalibration AG -CALIBRATE AG",
         "Invalid combination of commands. The TestCalibration argument cannot be used together "
         "with Calibrate"},
        {"-CalibrateOffline AG -Minimal -UseRawData d -ExportAllFiles o",
         "Invalid combination of commands. The CalibrateOffline argument cannot be used together "
         "with Minimal"},
        {"-UseRawData d -MagTest",
         "Invalid combination of commands. The MagTest argument cannot be used together with "
         "UseRawData"},
        {"-ExportXml a.xml -ExportAllFiles o",
         "Invalid combination of commands. The ExportXml argument cannot be used together with "
         "ExportAllFiles"},
        {"-ExportResult -UpdateTavo -ExportXml a.xml",
         "Invalid combination of commands. The ExportResult argument cannot be used together with "
         "ExportXml"},
        {"-TestCalibration AG -UpdateTavo -Minimal",
         "Invalid combination of commands. The TestCalibration argument cannot be used together "
         "with UpdateTavo"},
        {"-Calibrate M -MagAccuracyTest -UpdateTavo",
         "Invalid combination of commands. The Calibrate argument cannot be used together with "
         "MagAccuracyTest"},
        {"-MagTest", ""},
        {"-MagTest -ExportAllFiles o", ""},
    };
    for (const RuleRow& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

TEST_F(CmdLineRulesTest, OptionsThatNeedOrExcludeEachOther) {
    constexpr RuleRow kRows[] = {
        {"-Calibrate XYZ", kNoExport},
        {"-Calibrate AG -ExportResult", kNoExport},
        {"-CalibrateOffline XYZ -ExportAllFiles o", "Missing sensors data source"},
        {"-CalibrateOffline XYZ -UseRawData d", "Missing export command"},
        {"-Calibrate AG -UpdateTavo -ExportResult",
         "-ExportResult argument can only be used together with -ExportAllFiles"},
        {"-ExportResult", "-ExportResult argument can only be used together with -ExportAllFiles"},
        {"-ExportResult -ExportAllFiles o",
         "-ExportResult argument can only be used together with -Calibrate or -CalibrateOffline"},
        {"-TestCalibration AG -Minimal -ExportAllFiles o -ExportResult",
         "-ExportResult argument can only be used together with -Calibrate or -CalibrateOffline"},
        {"-TestCalibration AG", "Need to type -FourSteps or -Minimal"},
        {"-Calibrate AG -UpdateTavo -Minimal -FourSteps -CheckVsOriginalAxis",
         "Two contradicting movement sequences asked for"},
        {"-Calibrate AG -UpdateTavo -Minimal -CheckVsOriginalAxis",
         "CheckVsOriginalAxis: this option is supported only for FourSteps calibration"},
        {"-Calibrate AG -UpdateTavo -Minimal -UseRawData d",
         "Invalid combination of commands. The UseRawData argument cannot be used together with "
         "Minimal"},
        {"-ImportXml $/cal.xml -ExportXml a.xml",
         "Invalid combination of commands. The ExportXml argument cannot be used together with "
         "ImportXml"},
        {"-TestCalibration XYZ -FourSteps -NoEnter 0",
         "Currently -NoEnter option is supported only for Face Up testing"},
        {"-TestCalibration M -MagAccuracyTest -NoEnter 5",
         "Currently -NoEnter option is supported only for Face Up testing"},
        {"-Calibrate AG -UpdateTavo -DumpPrefix p -PrimaryOnly -SecondaryOnly",
         "Invalid calibration argument, data dump prefix can come only when loading a data dump"},
        {"-Calibrate AG -UpdateTavo -PrimaryOnly -SecondaryOnly -UseRawData d -SamplingInterval 5",
         "Invalid calibration argument, -PrimaryOnly and -SecondaryOnly ought to be exclusive"},
        {"-Calibrate AG -UpdateTavo -UseRawData d -SamplingInterval 0", kOnlineInterval},
        // Offline calibration and the interval have no family in common.
        {"-CalibrateOffline AG -UseRawData d -ExportAllFiles o -SamplingInterval 5",
         "Invalid combination of commands. The CalibrateOffline argument cannot be used together "
         "with SamplingInterval"},
    };
    for (const RuleRow& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

TEST_F(CmdLineRulesTest, NumbersOfMilliseconds) {
    constexpr RuleRow kRows[] = {
        {"-TestCalibration XYZ -Minimal -NoEnter ''",
         "Currently -NoEnter should come with non empty integer argument representing milliseconds "
         "to wait"},
        {"-NoEnter 0 -TestCalibration XYZ -Minimal", kPositiveTime},
        {"-Calibrate XYZ -UpdateTavo -NoEnter 000", kPositiveTime},
        {"-Calibrate AG -UpdateTavo -NoEnter 2147483648", kPositiveTime},
        {"-Calibrate AG -UpdateTavo -NoEnter 99999999999999999999", kPositiveTime},
        {"-Calibrate AG -UpdateTavo -NoEnter 2147483647", ""},
        {"-Calibrate AG -UpdateTavo -NoEnter 0001", ""},
        {"-Calibrate AG -UpdateTavo -SamplingInterval 0", kPositiveInterval},
        {"-Calibrate AG -UpdateTavo -SamplingInterval ''", kPositiveInterval},
        {"-Calibrate AG -UpdateTavo -SamplingInterval 2147483648", kPositiveInterval},
        {"-Calibrate AG -UpdateTavo -SamplingInterval 2147483647", ""},
    };
    for (const RuleRow& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

TEST_F(CmdLineRulesTest, CompleteLinesAreAccepted) {
    for (const char* line : {
             "-Calibrate AGM -UpdateTavo -ExportAllFiles results",
             "-Calibrate AGM -UpdateTavo -ExportAllFiles results -ExportResult",
             "-Calibrate AGM -ExportAllFiles results -UseRawData resultsFolder -DumpPrefix dump",
             "-Calibrate AG -UpdateTavo -FourSteps -CheckVsOriginalAxis -PrimaryOnly",
             "-Calibrate AG -UpdateTavo -Minimal -SecondaryOnly -SamplingInterval 20",
             "-Calibrate AGM -UpdateTavo -noGyroRotation -UseRawData d",
             "-CalibrateOffline AGM -ExportAllFiles o -ExportResult -UseRawData d -DumpPrefix p",
             "-CalibrateOffline AGM -ExportAllFiles o -UseRawData d -FourSteps",
             "-CalibrateOffline ALS -Auto $/light.txt -UseRawData d -ExportAllFiles o",
             "-TestCalibration AG -ExportAllFiles results -Minimal -noEnter 2000",
             "-TestCalibration AG -FourSteps -UseRawData d",
             "-TestCalibration AG -Minimal -UseRawData d -DumpPrefix ''",
             "-TestCalibration M -ExportAllFiles results -MagAccuracyTest",
         }) {
        EXPECT_EQ(failureOf(line), "") << line;
    }
}

}  // namespace tavocal::test
