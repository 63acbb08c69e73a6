#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/Failures.h"
#include "firmware/FakeKelu.h"
#include "firmware/SDT.h"
#include "sensors/Sensor.h"
#include "support/MessageOf.h"
#include "support/TempFolder.h"
#include "support/TextTable.h"

namespace tavocal::test {

// A firmware that answers for the blocks of its sensors and for form factor and hinge. It refuses
// any sensor that it has no block for.
struct BlockFirmware {
    explicit BlockFirmware(std::map<std::string, CalibrationBlock> known)
        : blocks(std::move(known)) {
        kelu->onWrite = [this](const Bytes& request) { kelu->say(answerTo(request)); };
    }

    std::map<std::string, CalibrationBlock> blocks;  // by LUID text
    std::uint8_t formFactor = 4;
    std::uint8_t hinge = 3;
    const std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    SDT sdt{[this] { return kelu; }};

  private:
    Bytes answerTo(const Bytes& request) const {
        const bool asksForSettings = request.at(13) == 0x04;
        if (asksForSettings) {
            return ByteWriter().u8(0x84).zeros(8).u8(formFactor).zeros(3).u8(hinge).take();
        }
        const auto found = blocks.find(luidText(luidFromBytes(request.data() + 4)));
        if (found == blocks.end()) {
            return {0x84, 0, 0, 1};
        }
        const auto size = static_cast<std::uint16_t>(found->second.size());
        return ByteWriter().u8(0x84).zeros(21).u16(size).append(found->second).take();
    }
};

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
