#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/Failures.h"
#include "formats/AlsConfig.h"
#include "fuzz/InputFile.h"

namespace {

bool isSound(const tavocal::AlsAutoConfig& config) {
    if (config.values.empty() || config.delayTime < 3 || config.delayTime > 50) {
        return false;
    }
    for (std::size_t i = 0; i < config.values.size(); ++i) {
        if (config.values[i] < tavocal::kLowestLightLevel ||
            (i > 0 && tavocal::levelsTooClose(config.values[i - 1], config.values[i]))) {
            return false;
        }
    }
    return true;
}

}  // namespace

// Whatever the file holds, it fails or gives levels that a run can work with.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::InputFile file(".txt");
    file.write(data, size);
    tavocal::AlsAutoConfig config;
    try {
        tavocal::loadAlsConfig(file.path(), config);
        if (!isSound(config)) {
            std::abort();
        }
    } catch (const tavocal::CalibrationException&) {
    }
    return 0;
}
