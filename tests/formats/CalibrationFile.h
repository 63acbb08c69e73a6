#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formats/BlockFirmware.h"
#include "sensors/Sensor.h"
#include "support/TempFolder.h"

namespace tavocal::test {

constexpr LUID kStaticAccelerometer = {0x73, 1, 2, 0, kStaticFlag};
constexpr LUID kDynamicAccelerometer = {0x73, 1, 2, 0, kDynamicFlag};
constexpr LUID kPlainInertial = {0x72, 0, 0, 0, 0};
constexpr LUID kAmbientLight = {0x41, 0, 0, 0, kStaticFlag};
constexpr LUID kGeneric = {0x1234, 0, 0, 0, kStaticFlag};

// The text of a "Sensor" with that content in its "CalibrationData".
std::string sensorText(const LUID& luid, int formatId, const std::string& content);

// A folder for calibration files, beside the firmware that their sensors belong to.
class CalibrationFile {
  public:
    using Sensors = std::vector<std::shared_ptr<Sensor>>;

    BlockFirmware firmware;

    std::string saved(const Sensors& sensors, bool useCurrent) const;
    Sensors load(const std::string& text);
    // The sensor of a file that holds this "Sensor" alone.
    std::shared_ptr<Sensor> loadSensor(const std::string& text);
    // What loading it fails with; "none" if it doesn't.
    std::string failureOf(const std::string& text);
    std::string sensorFailure(const std::string& text);

    const TempFolder folder;
};

}  // namespace tavocal::test
