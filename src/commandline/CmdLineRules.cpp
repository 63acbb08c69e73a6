#include "commandline/CmdLineRules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/Failures.h"
#include "base/Text.h"
#include "commandline/CmdLine.h"
#include "commandline/SensorText.h"

namespace tavocal {

namespace {

// Unused places of a table's lists are empty; no option has an empty name.
using Names = std::array<std::string_view, 3>;

struct ExtensionRule {
    std::string_view option;
    std::array<std::string_view, 2> extensions;
};

constexpr std::array<ExtensionRule, 3> kExtensionRules = {{
    {"ImportXml", {"xml"}},
    {"Auto", {"txt", "csv"}},
    {"ExportXml", {"xml"}},
}};

// Broken when every option of `given` is there and none of `missing` is.
struct CombinationRule {
    Names given;
    Names missing;
    const char* failure = nullptr;
};

constexpr std::array<CombinationRule, 11> kCombinationRules = {{
    {{"Calibrate"}, {"ExportAllFiles", "UpdateTavo"}, "Missing export or update command"},
    {{"CalibrateOffline"}, {"UseRawData"}, "Missing sensors data source"},
    {{"CalibrateOffline"}, {"ExportAllFiles"}, "Missing export command"},
    {{"ExportResult"},
     {"ExportAllFiles"},
     "-ExportResult argument can only be used together with -ExportAllFiles"},
    {{"ExportResult"},
     {"Calibrate", "CalibrateOffline"},
     "-ExportResult argument can only be used together with -Calibrate or -CalibrateOffline"},
    {{"TestCalibration"},
     {"FourSteps", "Minimal", "MagAccuracyTest"},
     "Need to type -FourSteps or -Minimal"},
    {{"Minimal", "FourSteps"}, {}, "Two contradicting movement sequences asked for"},
    {{"CheckVsOriginalAxis"},
     {"FourSteps"},
     "CheckVsOriginalAxis: this option is supported only for FourSteps calibration"},
    {{"Minimal", "UseRawData"},
     {"TestCalibration"},
     "Invalid combination of commands. The UseRawData argument cannot be used together with "
     "Minimal"},
    {{"ExportXml", "ImportXml"},
     {},
     "Invalid combination of commands. The ExportXml argument cannot be used together with "
     "ImportXml"},
    {{"NoEnter", "TestCalibration"},
     {"Minimal"},
     "Currently -NoEnter option is supported only for Face Up testing"},
}};

// These are judged behind the sensor text.
constexpr std::array<CombinationRule, 4> kLateCombinationRules = {{
    {{"DumpPrefix"},
     {"UseRawData"},
     "Invalid calibration argument, data dump prefix can come only when loading a data dump"},
    {{"PrimaryOnly", "SecondaryOnly"},
     {},
     "Invalid calibration argument, -PrimaryOnly and -SecondaryOnly ought to be exclusive"},
    {{"SamplingInterval", "CalibrateOffline"},
     {},
     "Invalid calibration argument, -SamplingInterval is not applied for offline calibration."},
    {{"SamplingInterval", "UseRawData"},
     {},
     "Invalid calibration argument, -SamplingInterval is not applied for offline calibration."},
}};

constexpr std::array<std::string_view, 3> kSensorCommands = {"Calibrate", "CalibrateOffline",
                                                             "TestCalibration"};

std::string extensionOf(const std::string& value) {
    const std::size_t dot = value.rfind('.');
    return lowerCase(dot == std::string::npos ? value : value.substr(dot + 1));
}

std::string joinExtensions(const ExtensionRule& rule) {
    std::string joined;
    for (const std::string_view extension : rule.extensions) {
        if (!extension.empty()) {
            joined += (joined.empty() ? "" : ", or ") + std::string(extension);
        }
    }
    return joined;
}

bool isAllowed(const ExtensionRule& rule, const std::string& extension) {
    return !extension.empty() && std::find(rule.extensions.begin(), rule.extensions.end(),
                                           extension) != rule.extensions.end();
}

void checkExtensions(const CmdLine& cmdLine) {
    for (const ExtensionRule& rule : kExtensionRules) {
        const std::string value = cmdLine.value(rule.option);
        if (cmdLine.hasOption(rule.option) && !isAllowed(rule, extensionOf(value))) {
            throw CmdLineException("Invalid extension for file " + value +
                                   ". Valid extension is only " + joinExtensions(rule));
        }
    }
}

void checkMandatoryOptions(const CmdLine& cmdLine) {
    for (const CmdLineOption& option : cmdLine.optionTable()) {
        if (option.mandatory && !cmdLine.hasOption(option.name)) {
            throw CmdLineException("The mandatory argument: '" + option.name +
                                   "' is not specified");
        }
    }
}

// An option always shares a family with itself.
void checkFamily(const CmdLineParsedOption& command, const CmdLine& cmdLine) {
    for (const CmdLineParsedOption& other : cmdLine.parsedOptions()) {
        if ((command.modeMask & other.modeMask) == 0) {
            throw CmdLineException("Invalid combination of commands. The " + command.name +
                                   " argument cannot be used together with " + other.name);
        }
    }
}

void checkCommands(const CmdLine& cmdLine) {
    bool anyCommand = false;
    for (const CmdLineParsedOption& option : cmdLine.parsedOptions()) {
        if (option.isCommand) {
            anyCommand = true;
            checkFamily(option, cmdLine);
        }
    }
    if (!anyCommand) {
        throw CmdLineException("No command was specified");
    }
}

bool isBroken(const CombinationRule& rule, const CmdLine& cmdLine) {
    const auto isGiven = [&cmdLine](std::string_view name) {
        return !name.empty() && cmdLine.hasOption(name);
    };
    const auto isGivenOrUnused = [&isGiven](std::string_view name) {
        return name.empty() || isGiven(name);
    };
    return std::all_of(rule.given.begin(), rule.given.end(), isGivenOrUnused) &&
           std::none_of(rule.missing.begin(), rule.missing.end(), isGiven);
}

void checkCombinations(std::span<const CombinationRule> rules, const CmdLine& cmdLine) {
    for (const CombinationRule& rule : rules) {
        if (isBroken(rule, cmdLine)) {
            throw CmdLineException(rule.failure);
        }
    }
}

// Digits whose number is above 0 and fits the 32-bit integers that the run counts in.
bool isPositiveInteger(const std::string& digits) {
    std::int32_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && number > 0;
}

// That the value holds digits only was found with the option itself.
void checkWaitingTime(const CmdLine& cmdLine) {
    if (!cmdLine.hasOption("NoEnter")) {
        return;
    }
    const std::string time = cmdLine.value("NoEnter");
    if (time.empty()) {
        throw CmdLineException(
            "Currently -NoEnter should come with non empty integer argument representing "
            "milliseconds to wait");
    }
    if (!isPositiveInteger(time)) {
        throw CmdLineException(
            "Currently -NoEnter should come with positive integer argument representing "
            "milliseconds to wait");
    }
}

// Stricter than for other numbers, as the text says: an interval of 0 asks the firmware for no rate
// at all, and nothing or more than 32 bits would only be found in the middle of the run.
void checkSamplingInterval(const CmdLine& cmdLine) {
    if (cmdLine.hasOption("SamplingInterval") &&
        !isPositiveInteger(cmdLine.value("SamplingInterval"))) {
        throw CmdLineException(
            "Invalid value of: 'SamplingInterval', only positive integer is accepted.");
    }
}

// At most one of these commands is given by now.
void checkSensors(const CmdLine& cmdLine) {
    for (const std::string_view command : kSensorCommands) {
        if (cmdLine.hasOption(command)) {
            checkSensorText(readSensorText(cmdLine.value(command)), cmdLine);
        }
    }
}

}  // namespace

void checkCmdLineRules(const CmdLine& cmdLine) {
    checkExtensions(cmdLine);
    checkMandatoryOptions(cmdLine);
    checkCommands(cmdLine);
    checkCombinations(kCombinationRules, cmdLine);
    checkWaitingTime(cmdLine);
    checkSensors(cmdLine);
    checkCombinations(kLateCombinationRules, cmdLine);
    checkSamplingInterval(cmdLine);
}

}  // namespace tavocal
