#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/Bytes.h"
#include "vocabulary/Luid.h"

namespace tavocal {

// One record of a published buffer.
struct PnrRecord {
    LUID luid;
    std::uint64_t timestamp = 0;          // microseconds
    std::span<const std::uint8_t> slots;  // whole values of 4 bytes, within the message

    std::size_t valueCount() const;
    // REQUIRES: index < valueCount().
    std::int32_t value(std::size_t index) const;
};

// Walks the records of one SMHI_PNR_REC_PUBLISH_BUF message, which must outlive the walk and the
// records. A record that is shorter than its fixed fields, or that runs past the buffer or the
// message, ends the walk; those before it stand.
class PnrBuffer {
  public:
    explicit PnrBuffer(std::span<const std::uint8_t> message);

    // Nothing behind the last record.
    std::optional<PnrRecord> next();

    // The walk has ended ahead of the buffer's end.
    bool isDamaged() const { return damaged; }

  private:
    std::optional<PnrRecord> endDamaged();

    ByteReader reader;
    std::uint64_t end = 0;  // as the message has it; may lie behind what there is
    std::size_t offset;
    bool damaged = false;
};

}  // namespace tavocal
