#include "commandline/CmdLineUsage.h"

#include <algorithm>
#include <array>
#include <span>

namespace tavocal {

namespace {

// What follows the program's name. The forms with and without -ExportResult stand next to each
// other.
constexpr std::array<std::string_view, 11> kForms = {
    " [-ImportXml <filename>] [-ExportXml <filename>]",
    " -Calibrate <sensors> [-ExportAllFiles <folder>] [-UpdateTavo] [-UseRawData"
    " <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-Minimal | -FourSteps]"
    " [-CheckVsOriginalAxis] [-noGyroRotation] [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval"
    " <sampling_interval_ms>]",
    " -Calibrate <sensors> [-ExportAllFiles <folder> [-ExportResult]] [-UpdateTavo] [-UseRawData"
    " <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-Minimal | -FourSteps]"
    " [-CheckVsOriginalAxis] [-noGyroRotation] [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval"
    " <sampling_interval_ms>]",
    " -CalibrateOffline <sensors> -ExportAllFiles <folder> -UseRawData <dump-folder-path>"
    " [-DumpPrefix <dump-file-prefix>] [-FourSteps]  [-PrimaryOnly | -SecondaryOnly]",
    " -CalibrateOffline <sensors> -ExportAllFiles <folder> [-ExportResult] -UseRawData"
    " <dump-folder-path> [-DumpPrefix <dump-file-prefix>] [-FourSteps]  [-PrimaryOnly |"
    " -SecondaryOnly]",
    " -TestCalibration <sensors> [-ExportAllFiles <folder>]  [-Minimal | -FourSteps]"
    "  [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]",
    " -Calibrate ALS [-ExportAllFiles <folder>] [-Auto <config-file-path>] [-UpdateTavo]"
    " [-UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-PrimaryOnly |"
    " -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]",
    " -Calibrate ALS [-ExportAllFiles <folder> [-ExportResult]] [-Auto <config-file-path>]"
    " [-UpdateTavo] [-UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>]]"
    " [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]",
    " -CalibrateOffline ALS -Auto <config-file-path> -UseRawData <dump-folder-path> [-DumpPrefix"
    " <dump-file-prefix>] -ExportAllFiles <folder> [-PrimaryOnly | -SecondaryOnly]",
    " -CalibrateOffline ALS -Auto <config-file-path> -UseRawData <dump-folder-path> [-DumpPrefix"
    " <dump-file-prefix>] -ExportAllFiles <folder> [-ExportResult] [-PrimaryOnly |"
    " -SecondaryOnly]",
    " -MagTest [-ExportAllFiles <folder>]",
};

constexpr std::array<std::string_view, 9> kExamples = {
    " -Calibrate AGM -UpdateTavo -ExportAllFiles results",
    " -Calibrate AGM -UpdateTavo -ExportAllFiles results -ExportResult",
    " -Calibrate AGM -UpdateTavo -ExportAllFiles results -UseRawData resultsFolder -DumpPrefix"
    " dataDump",
    " -Calibrate AGM -UpdateTavo -ExportAllFiles results -ExportResult -UseRawData resultsFolder"
    " -DumpPrefix dataDump",
    " -TestCalibration AG -ExportAllFiles results -Minimal -noEnter 2000",
    " -TestCalibration AG -ExportAllFiles results -FourSteps",
    " -TestCalibration M -ExportAllFiles results -MagAccuracyTest",
    " -ExportXml filename.xml",
    " -ImportXml filename.xml",
};

std::size_t nameWidth(const CmdLineOption& option) {
    return option.name.size() + option.placeholder.size();
}

std::string optionLine(const CmdLineOption& option, std::size_t widest) {
    const std::string value = option.takesValue ? option.placeholder : std::string();
    return " -" + option.name + " " + value + std::string(widest - nameWidth(option) + 1, ' ') +
           ":  " + option.description + "\n";
}

std::string optionList(const std::vector<CmdLineOption>& options) {
    std::size_t widest = 0;
    for (const CmdLineOption& option : options) {
        widest = std::max(widest, nameWidth(option));
    }
    std::string list;
    for (const CmdLineOption& option : options) {
        list += optionLine(option, widest);
    }
    return list;
}

// Each line behind the program's name, with `separator` between two.
std::string programLines(std::span<const std::string_view> lines, std::string_view program,
                         std::string_view separator) {
    std::string text;
    for (const std::string_view line : lines) {
        text += text.empty() ? std::string_view() : separator;
        text += program;
        text += line;
    }
    return text;
}

}  // namespace

std::string usageText(const std::vector<CmdLineOption>& options, std::string_view program) {
    return "\nUsage:\n\n" + programLines(kForms, program, "\n") + "\n\nDescription:\n\n" +
           optionList(options) + "\nExamples:\n\n\t" + programLines(kExamples, program, "\n\t") +
           "\n";
}

}  // namespace tavocal
