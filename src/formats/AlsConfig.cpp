#include "formats/AlsConfig.h"

#include <string_view>

#include "base/Failures.h"
#include "base/TextToNumber.h"
#include "formats/CsvLines.h"
#include "platform/Files.h"
#include "sensors/light/LightLevels.h"

namespace tavocal {

namespace {

constexpr int kShortestDelay = 3;
constexpr int kLongestDelay = 50;

std::string_view stripped(std::string_view text) {
    constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

int numberIn(std::string_view field) {
    return parseInt(std::string(stripped(field)));
}

void checkValues(const std::vector<int>& values) {
    const auto low = tooLowLevel(values);
    if (low != values.end()) {
        throw CalibrationException("Invalid light value in configuration file " +
                                   std::to_string(*low) + ". value should be bigger than 1");
    }
    if (levelsTurn(values)) {
        throw CalibrationException(
            "Invalid values in configuration file. Values should be in ascending or "
            "descending order");
    }
    if (levelsTooClose(values)) {
        throw CalibrationException(
            "Invalid delta between values in configuration file. Minimum delta should be " +
            std::to_string(kSmallestLevelDelta));
    }
}

std::vector<int> readValues(std::string_view text) {
    std::vector<std::string_view> fields;
    // One field more than can be right is enough to fail, however long the line is.
    splitFields(text, ',', std::size_t{kMostLightLevels} + 1, fields);
    std::vector<int> values;
    values.reserve(fields.size());
    for (const std::string_view field : fields) {
        values.push_back(numberIn(field));
    }
    checkValues(values);
    return values;
}

int readDelay(std::string_view text) {
    const int delay = numberIn(text);
    if (delay < kShortestDelay) {
        throw CalibrationException("Invalid delay time. Minimum delay time is 3 seconds.");
    }
    if (delay > kLongestDelay) {
        throw CalibrationException("Invalid delay time. Maximum delay time is 50 seconds.");
    }
    return delay;
}

void readLine(std::string_view line, AlsAutoConfig& config) {
    std::vector<std::string_view> fields;
    splitFields(line, '=', 3, fields);
    if (fields.size() != 2) {
        return;
    }
    const std::string_view key = stripped(fields[0]);
    if (key == "values") {
        config.values = readValues(fields[1]);
    } else if (key == "delay_time") {
        config.delayTime = readDelay(fields[1]);
    } else {
        throw CalibrationException(
            "Invalid value in the configuration file. The format should be \"values=list of comma "
            "separated values\" or \"delay_time=value\"");
    }
}

}  // namespace

void loadAlsConfig(const std::string& path, AlsAutoConfig& config) {
    std::string content;
    if (!platform::readFile(path, content)) {
        throw CalibrationException("Cannot read input file " + path);
    }
    CsvLines lines(content);
    std::string_view line;
    while (lines.next(line)) {
        readLine(line, config);
    }
    if (config.values.empty()) {
        throw CalibrationException("Invalid configuration file " + path);
    }
}

}  // namespace tavocal
