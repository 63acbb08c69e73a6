#include "sensors/CalibrationBlock.h"

#include "base/Failures.h"

namespace tavocal {

void requireBlockSize(const CalibrationBlock& block, std::size_t size) {
    if (block.size() < size) {
        throw CalibrationException("Invalid calibration data");
    }
}

}  // namespace tavocal
