#include "formats/CsvParser.h"

#include <exception>

#include "base/Failures.h"
#include "base/Text.h"
#include "base/TextToNumber.h"
#include "formats/CsvLines.h"
#include "formats/CsvNumbers.h"
#include "formats/DumpPaths.h"
#include "log/Logger.h"
#include "platform/Files.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/FormFactor.h"

namespace tavocal {

namespace {

constexpr std::string_view kLuidKey = "LUID=";
constexpr std::string_view kFormFactorKey = "FORMFACTOR=";
constexpr std::string_view kHingeKey = "HINGE=";
constexpr const char* kAxisSuffixes[] = {"_X", "_Y", "_Z"};

// ---- Writing ----

std::string columnHeader(const Sensor& sensor) {
    const std::string unit = "[" + unitToText(sensor.samplingUnit) + "]";
    std::string header = "time[ms]";
    if (sensor.sensorKind == SensorKind::Inertial) {
        for (const char* axis : kAxisSuffixes) {
            header += "," + sensor.getDisplayName() + axis + unit;
        }
    } else {
        for (int i = 0; i < sensor.valuesPerSample; ++i) {
            header += "," + sensor.getDisplayName() + "_" + std::to_string(i) + unit;
        }
    }
    return header + "\n";
}

void appendRow(std::string& text, const Sample& sample) {
    appendFixed(text, sample.timestamp);
    for (const double value : sample.values) {
        text += ',';
        appendFixed(text, value);
    }
    text += '\n';
}

std::string dumpText(const Sensor& sensor, const std::vector<Sample>& samples) {
    std::string text = std::string(kLuidKey) + sensor.getLuidText() + "\n" +
                       std::string(kFormFactorKey) + formFactorText(sensor.formFactor) + "\n" +
                       std::string(kHingeKey) + hingeText(sensor.hinge) + "\n" +
                       columnHeader(sensor);
    for (const Sample& sample : samples) {
        appendRow(text, sample);
    }
    return text;
}

// ---- Reading ----

// The fields of a row with all of its values.
std::size_t fullRow(const Sensor& sensor) {
    return static_cast<std::size_t>(sensor.valuesPerSample) + 1;
}

bool isComment(std::string_view line) {
    return startsWith(line, "#");
}

bool nextRow(CsvLines& lines, std::string_view& line) {
    bool got = lines.next(line);
    while (got && (line.empty() || isComment(line))) {
        got = lines.next(line);
    }
    return got;
}

[[noreturn]] void fail(const std::string& message) {
    throw CalibrationException(message);
}

// The text between the first "[" and the first "]".
std::string_view unitField(std::string_view field) {
    const std::size_t open = field.find('[');
    const std::size_t close = field.find(']');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        fail("Invalid header format");
    }
    if (close == open + 1) {
        fail("Invalid header format, unit is not specified");
    }
    return field.substr(open + 1, close - open - 1);
}

}  // namespace

void CsvParser::writeToFile(const std::string& pathTemplate, const SensorDataMap& samples) {
    constexpr const char* kName = "CsvParser::writeToFile";
    for (const auto& [sensor, rows] : samples) {
        TAVOCAL_LOG(Debug, kName, "Writing sensor dump file for " + sensor->getDisplayName());
        const std::string path = dumpFileName(pathTemplate, sensor->getDisplayName());
        TAVOCAL_LOG(Info, kName, "Data size is " + std::to_string(rows.size()));
        const std::string failure = platform::writeTextFile(path, dumpText(*sensor, rows));
        if (!failure.empty()) {
            TAVOCAL_LOG(Debug, kName, "Writing " + path + " failed: " + failure);
            platform::discardFile(path);
        }
    }
}

SensorDataMap CsvParser::readFromFile(const std::string& pathTemplate,
                                      const std::vector<std::shared_ptr<Sensor>>& sensors,
                                      bool readLuid) {
    SensorDataMap result;
    for (const auto& sensor : sensors) {
        result[sensor] = readSensor(pathTemplate, *sensor, readLuid);
    }
    return result;
}

std::vector<Sample> CsvParser::readSensor(const std::string& pathTemplate, Sensor& sensor,
                                          bool readLuid) {
    constexpr const char* kName = "CsvParser::readFromFile";
    TAVOCAL_LOG(Debug, kName, "Reading sensor dump file for " + sensor.getDisplayName());
    file = replayFileName(pathTemplate, sensor.getDisplayName());
    if (!platform::fileExists(file)) {
        fail("Sensor data file " + file + " does not exist");
    }
    std::string text;
    if (!platform::readFile(file, text)) {
        fail("Cannot read input file " + file);
    }
    if (text.empty()) {
        fail("Input file " + file + " is empty");
    }
    CsvLines lines(text);
    readHeader(lines, sensor, readLuid);
    std::vector<Sample> samples = readRows(lines, sensor);
    TAVOCAL_LOG(Info, kName, "Data size is " + std::to_string(samples.size()));
    return samples;
}

void CsvParser::readHeader(CsvLines& lines, Sensor& sensor, bool readLuid) {
    std::string_view line;
    const auto next = [&] {
        if (!lines.next(line)) {
            fail("Missing column header at input file " + file);
        }
    };
    do {
        next();
    } while (isComment(line));
    if (startsWith(line, kLuidKey)) {
        if (readLuid) {
            readLuidLine(line.substr(kLuidKey.size()), sensor);
        }
        next();
    }
    while (line.empty() || isComment(line)) {
        next();
    }
    if (startsWith(line, kFormFactorKey)) {
        setFormFactorFromText(sensor.formFactor, line.substr(kFormFactorKey.size()));
        next();
    }
    if (startsWith(line, kHingeKey)) {
        setHingeFromText(sensor.hinge, line.substr(kHingeKey.size()));
        next();
    }
    splitColumns(line, sensor);
    if (tokens.size() != fullRow(sensor)) {
        fail("Unexpected number of columns at input file " + file);
    }
    needsConversion = false;
    if (sensor.sensorKind == SensorKind::Inertial) {
        checkColumns(sensor);
    }
}

// One field too many is enough to know that the count is wrong.
void CsvParser::splitColumns(std::string_view line, const Sensor& sensor) {
    splitFields(line, ',', fullRow(sensor) + 1, tokens);
}

// What stands behind the digits of a LUID isn't looked at.
void CsvParser::readLuidLine(std::string_view value, Sensor& sensor) {
    TAVOCAL_LOG(Info, "CsvParser::readFromFile", "LUID is " + std::string(value));
    if (!parseLuidText(value.substr(0, 2 * kLuidSize), sensor.luid)) {
        fail("Invalid LUID at input file " + file);
    }
}

void CsvParser::checkColumns(const Sensor& sensor) {
    if (lowerCase(tokens[0]) != "time[ms]") {
        fail("Invalid header timestamp");
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (!contains(tokens[axis + 1], sensor.getDisplayName() + kAxisSuffixes[axis])) {
            fail("Invalid header");
        }
    }
    const std::string_view unit = unitField(tokens[1]);
    const std::string_view unitY = unitField(tokens[2]);
    const std::string_view unitZ = unitField(tokens[3]);
    if (unit != unitY || unit != unitZ) {
        fail("Invalid header format. All columns should have the same unit");
    }
    fileUnit = textToUnit(unit);
    sensorUnit = sensor.samplingUnit;
    needsConversion = fileUnit != sensorUnit;
}

// Rows may be two bytes long, so samples that were moved to more and more room would cost many
// times the text.
void CsvParser::reserveRows(std::vector<Sample>& samples, CsvLines lines) const {
    std::size_t count = 0;
    for (std::string_view line; nextRow(lines, line);) {
        ++count;
    }
    try {
        samples.reserve(count);
    } catch (const std::exception&) {
        fail("Out of memory while reading " + file);
    }
}

std::vector<Sample> CsvParser::readRows(CsvLines& lines, const Sensor& sensor) {
    std::vector<Sample> samples;
    reserveRows(samples, lines);
    std::string_view line;
    while (nextRow(lines, line)) {
        splitColumns(line, sensor);
        if (tokens.size() != fullRow(sensor) && tokens.size() != 1) {
            fail("Unexpected number of values at input file " + file);
        }
        parseRow();
        if (!samples.empty() && samples.back().timestamp > row.timestamp) {
            fail("Invalid order of data at input file " + file);
        }
        samples.push_back(row);
    }
    return samples;
}

void CsvParser::parseRow() {
    double time = 0.0;
    if (!readDouble(tokens[0], time)) {
        fail("CSV parsing error. Invalid timestamp value " + std::string(tokens[0]));
    }
    if (time < 0.0) {
        fail("CSV parsing error. Negative timestamp is invalid. " + std::string(tokens[0]));
    }
    row.timestamp = readCsvMilliseconds(tokens[0]);
    row.values = Vector(static_cast<int>(tokens.size()) - 1);
    for (int i = 0; i < row.values.size(); ++i) {
        const std::string_view field = tokens[static_cast<std::size_t>(i) + 1];
        if (!readDouble(field, row.values[i])) {
            fail("CSV parsing error. Invalid value " + std::string(field));
        }
        if (needsConversion) {
            row.values[i] = convertUnit(row.values[i], fileUnit, sensorUnit);
        }
    }
}

}  // namespace tavocal
