#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "formats/TestingConfigFile.h"
#include "fuzz/Attempt.h"
#include "fuzz/ScratchFolder.h"
#include "vocabulary/TestingConfig.h"

// Whatever the file of thresholds holds, it gives numbers or a failure.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::ScratchFolder folder;
    folder.enter();
    folder.write("TestingConfig.xml", {data, size});
    tavocal::TestingConfig config;
    try {
        tavocal::fuzz::attempt([&] { tavocal::loadTestingConfig(config); });
    } catch (const std::invalid_argument&) {
        // A decimal reference without a digit.
    }
    return 0;
}
