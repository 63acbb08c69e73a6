#include "calibration/CalibrationBlock.h"

#include "base/Failures.h"

namespace tavocal {

CalibrationBlock blockHead(int formatId, int version) {
    return {static_cast<std::uint8_t>(formatId), static_cast<std::uint8_t>(version)};
}

void requireBlockSize(const CalibrationBlock& block, std::size_t size) {
    if (block.size() < size) {
        throw CalibrationException("Invalid calibration data");
    }
}

}  // namespace tavocal
