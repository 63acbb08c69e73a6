#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "formats/BlockFirmware.h"
#include "sensors/Sensor.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {

constexpr LUID kStaticAccelerometer = {0x73, 1, 2, 0, kStaticFlag};
constexpr LUID kDynamicAccelerometer = {0x73, 1, 2, 0, kDynamicFlag};
constexpr LUID kPlainInertial = {0x72, 0, 0, 0, 0};
constexpr LUID kAmbientLight = {0x41, 0, 0, 0, kStaticFlag};
constexpr LUID kGeneric = {0x1234, 0, 0, 0, kStaticFlag};

// One of these: static, dynamic, both (flags), plain, light, generic.
LUID luidOf(const std::string& kind);
std::string fileText(const std::string& sensors);

// A folder for calibration files, beside a firmware with a block for each of the sensors above but
// for the generic one.
class CalibrationFile : public testing::Test {
  protected:
    using Sensors = std::vector<std::shared_ptr<Sensor>>;

    CalibrationFile();

    std::string saved(const Sensors& sensors, bool useCurrent) const;
    Sensors load(const std::string& text);
    // The block to write of the file's first sensor in hexadecimal, or the failure.
    std::string outcomeOf(const std::string& text);
    // Rows "kind FormatId content => outcome" of a file with one "CalibrationData", whose Version
    // is 7. BAD means "XML parsing error.", NUMBER(x) that x is none, LUID the sensor's.
    void expectOutcomes(const std::string& rows, const TextTable& meanings = {});

    BlockFirmware firmware;
    const TempFolder folder;
};

}  // namespace tavocal::test
