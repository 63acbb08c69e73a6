#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/Bytes.h"
#include "simulator/messages/FirmwareFault.h"
#include "vocabulary/Luid.h"

namespace tavocal::simulator {

// Packs records into the buffers that the firmware publishes, and spoils them if that is the fault.
class Publisher {
  public:
    explicit Publisher(const FirmwareFault& theFault);

    void add(const LUID& luid, std::uint64_t microseconds, std::span<const std::int32_t> values);

    // The buffers that are full. With `all` also one that isn't.
    std::vector<Bytes> take(bool all);
    // Forgets what hasn't been taken.
    void clear();

    // Microseconds of the oldest record that waits, or nothing.
    bool isEmpty() const { return records.size() == 0; }
    std::uint64_t oldest() const { return firstTime; }

  private:
    void append(const LUID& luid, std::uint64_t microseconds, std::span<const std::int32_t> values);
    void finishBuffer();

    FirmwareFault fault;
    ByteWriter records;  // of the buffer at hand
    std::uint64_t firstTime = 0;
    std::vector<Bytes> full;
    unsigned recordCount = 0;
    unsigned bufferCount = 0;
};

}  // namespace tavocal::simulator
