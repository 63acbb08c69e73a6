#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "formats/CalibrationXml.h"
#include "fuzz/AnsweringKelu.h"
#include "fuzz/Attempt.h"
#include "fuzz/ScratchFolder.h"
#include "sensors/model/Sensor.h"

namespace {

using Sensors = std::vector<std::shared_ptr<tavocal::Sensor>>;

// Nothing if the file can't be loaded.
Sensors load(const std::string& path, tavocal::SDT& firmware) {
    Sensors sensors;
    try {
        tavocal::fuzz::attempt([&] { sensors = tavocal::loadCalibrationXml(path, firmware); });
    } catch (const std::invalid_argument&) {
        // A number, or a decimal reference, without a digit.
    } catch (const std::out_of_range&) {
        // A number beyond its range.
    }
    return sensors;
}

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void compare(const Sensors& before, const Sensors& after) {
    require(before.size() == after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        before[i]->validateCalibrationData(before[i]->calibrationToWrite);
        require(before[i]->getLuid() == after[i]->getLuid());
        require(before[i]->calibrationToWrite == after[i]->calibrationToWrite);
    }
}

}  // namespace

// A calibration file, which ends at the first NUL, then what the firmware answers. The blocks that
// it gives come back from the file that they are saved to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::ScratchFolder folder;
    tavocal::fuzz::InputBytes input(data, size);
    const std::string path = folder.write("calibration.xml", input.untilNul());
    tavocal::SDT firmware = tavocal::fuzz::answeringFirmware(tavocal::fuzz::readAnswers(input));
    const Sensors sensors = load(path, firmware);
    const std::string saved = folder.path("saved.xml");
    if (!sensors.empty() &&
        tavocal::fuzz::attempt([&] { tavocal::saveCalibrationXml(saved, sensors, false); })) {
        compare(sensors, load(saved, firmware));
    }
    return 0;
}
