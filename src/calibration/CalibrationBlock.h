#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavocal {

// A sensor's calibration as the firmware keeps it: byte 0 FormatId, byte 1 Version, then the body.
using CalibrationBlock = std::vector<std::uint8_t>;

constexpr std::size_t kBlockHeadSize = 2;

// FormatId values from here on mark a vendor's own format, of which only that byte is known.
constexpr int kFirstVendorFormat = 128;

// A block of nothing but its head. REQUIRES: both from 0 to 255.
CalibrationBlock blockHead(int formatId, int version);

// Throws CalibrationException "Invalid calibration data" if the block is shorter than `size`.
void requireBlockSize(const CalibrationBlock& block, std::size_t size);

}  // namespace tavocal
