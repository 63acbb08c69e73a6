#include "simulator/firmware/Publisher.h"

#include <array>
#include <utility>

#include "firmware/SmhiLayout.h"

namespace tavocal::simulator {

namespace {

using Kind = FirmwareFaultKind;

constexpr LUID kForeigner{0x0221, 0x0042, 0, 0, kStaticFlag};
// A broken record, too, has to fit into the last buffer.
constexpr std::size_t kLargestRecords = 3900;
constexpr unsigned kOddPeriod = 10;
constexpr unsigned kForeignPeriod = 3;
constexpr unsigned kDamagePeriod = 4;

}  // namespace

Publisher::Publisher(const FirmwareFault& theFault) : fault(theFault) {}

void Publisher::add(const LUID& luid, std::uint64_t microseconds,
                    std::span<const std::int32_t> values) {
    ++recordCount;
    if (fault.is(Kind::OddRecords) && recordCount % kOddPeriod == 0 && values.size() > 1) {
        append(luid, microseconds, values.first(values.size() - 1));
    }
    if (fault.is(Kind::ForeignRecords) && recordCount % kForeignPeriod == 0) {
        append(kForeigner, microseconds, values);
    }
    append(luid, microseconds, values);
}

void Publisher::append(const LUID& luid, std::uint64_t microseconds,
                       std::span<const std::int32_t> values) {
    const std::size_t excess = fault.is(Kind::OddRecords) ? 2 : 0;
    const std::size_t length = smhi::kValuesInRecord + values.size() * smhi::kValueSize + excess;
    if (records.size() + length > kLargestRecords) {
        finishBuffer();
    }
    if (records.size() == 0) {
        firstTime = microseconds;
    }
    records.u8(static_cast<std::uint8_t>(length)).append(luidBytes(luid)).u64(microseconds);
    for (const std::int32_t value : values) {
        records.i32(value);
    }
    records.zeros(excess);
}

// The first kind of damage never gets to the next record, the second says that it is longer than
// what is there.
void Publisher::finishBuffer() {
    const unsigned number = bufferCount++;
    if (fault.is(Kind::DamagedRecords) && number % kDamagePeriod == 0) {
        records.u8(number % (2 * kDamagePeriod) == 0 ? 0 : 200).append(luidBytes(kForeigner));
    }
    const auto size = static_cast<std::uint32_t>(records.size());
    full.push_back(ByteWriter()
                       .u8(smhi::SMHI_PNR_REC_PUBLISH_BUF)
                       .zeros(3)
                       .u32(size)
                       .append(records.take())
                       .take());
}

std::vector<Bytes> Publisher::take(bool all) {
    if (all && !isEmpty()) {
        finishBuffer();
    }
    return std::exchange(full, {});
}

void Publisher::clear() {
    records.take();
    full.clear();
}

}  // namespace tavocal::simulator
