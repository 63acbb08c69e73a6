#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/Failures.h"
#include "formats/AlsConfig.h"
#include "fuzz/ScratchFolder.h"
#include "sensors/light/LightLevels.h"

namespace {

bool isSound(const tavocal::AlsAutoConfig& config) {
    const tavocal::LevelSeries& levels = config.values;
    return !levels.empty() && tavocal::tooLowLevel(levels) == levels.end() &&
           !tavocal::levelsTurn(levels) && !tavocal::levelsTooClose(levels) &&
           config.delayTime >= 3 && config.delayTime <= 50;
}

}  // namespace

// Whatever the file holds, it fails or gives levels that a run can work with.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::ScratchFolder folder;
    tavocal::AlsAutoConfig config;
    try {
        tavocal::loadAlsConfig(folder.write("als.txt", {data, size}), config);
        if (!isSound(config)) {
            std::abort();
        }
    } catch (const tavocal::CalibrationException&) {
    }
    return 0;
}
