#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formats/CsvLines.h"
#include "formats/SensorDataMap.h"
#include "numerics/Sample.h"
#include "vocabulary/Unit.h"

namespace tavocal {

class CsvLines;

// Writes and reads sensor dumps: one text file per sensor, with its LUID, form factor, hinge, a
// column header and one row per sample. A small value object, made for one job.
//
// The reader takes LF and CR LF line ends, comments ("#") and missing header lines, and cuts
// timestamps to whole milliseconds. Values come back in the sensor's samplingUnit.
class CsvParser {
  public:
    // One file per entry, with the platform's line ends. A file that can't be written whole is
    // passed over, and none of its name is left, so that no samples of another run stand beside
    // those of this one.
    void writeToFile(const std::string& pathTemplate, const SensorDataMap& samples);

    // Reads the dumps of all sensors, and takes form factor and hinge from their headers into the
    // sensors; the LUID too if `readLuid` is set. Throws CalibrationException for a missing or bad
    // file, MathException for an unknown unit.
    SensorDataMap readFromFile(const std::string& pathTemplate,
                               const std::vector<std::shared_ptr<Sensor>>& sensors, bool readLuid);

  private:
    std::vector<Sample> readSensor(const std::string& pathTemplate, Sensor& sensor, bool readLuid);
    void readHeader(CsvLines& lines, Sensor& sensor, bool readLuid);
    void readLuidLine(std::string_view line, Sensor& sensor);
    void splitColumns(std::string_view line, const Sensor& sensor);
    void checkColumns(const Sensor& sensor);
    void reserveRows(std::vector<Sample>& samples, CsvLines lines) const;
    std::vector<Sample> readRows(CsvLines& lines, const Sensor& sensor);
    void parseRow();

    std::string file;  // the one being read
    Unit sensorUnit = Unit::unknown;
    Unit fileUnit = Unit::unknown;
    bool needsConversion = false;
    std::vector<std::string_view> tokens;  // the fields of the current line
    Sample row;                            // the sample parsed last
};

}  // namespace tavocal
