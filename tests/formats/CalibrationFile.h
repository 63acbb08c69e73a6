#pragma once

#include <gtest/gtest.h>

#include "base/Failures.h"
#include "formats/BlockFirmware.h"
#include "sensors/Sensor.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {

// A folder for calibration files, beside a firmware with a block for each kind of sensor but the
// generic one.
class CalibrationFile : public testing::Test {
  protected:
    using Sensors = std::vector<std::shared_ptr<Sensor>>;

    std::string saved(const Sensors& sensors, bool useCurrent) const;
    Sensors load(const std::string& text);
    // The block to write of the file's first sensor in hexadecimal, or the failure.
    std::string outcomeOf(const std::string& text);
    // Rows "kind FormatId content => outcome" of a file with one "CalibrationData", whose Version
    // is 7. A kind is static, dynamic, both (flags), plain (inertial), light or generic. BAD means
    // "XML parsing error.", LUID the sensor's, SCALE, LEVELS and STEP some of a light sensor.
    void expectTableOfTest();
    // The file that was loaded last.
    std::string lastLoaded() const { return fileContent(folder.path("loaded.xml")); }

    BlockFirmware firmware{
        {{"0073000100020002", CalibrationBlock(40, 0)},
         {"0073000100020001", CalibrationBlock(12, 1)},
         {"0072000000000000", CalibrationBlock(40, 0)},
         {"0041000000000002", {1, 0, 1, 0, 1, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}}};
    const TempFolder folder;
};

}  // namespace tavocal::test
