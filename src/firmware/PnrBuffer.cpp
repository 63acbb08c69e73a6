#include "firmware/PnrBuffer.h"

#include "firmware/SmhiLayout.h"

namespace tavocal {

std::size_t PnrRecord::valueCount() const {
    return slots.size() / smhi::kValueSize;
}

std::int32_t PnrRecord::value(std::size_t index) const {
    return ByteReader(slots).i32(index * smhi::kValueSize);
}

PnrBuffer::PnrBuffer(std::span<const std::uint8_t> message)
    : reader(message), offset(smhi::kRecordsAt) {
    if (!reader.has(0, smhi::kRecordsAt)) {
        damaged = true;
        return;
    }
    end = std::uint64_t{smhi::kRecordsAt} + reader.u32(smhi::kRecordsSizeAt);
}

std::optional<PnrRecord> PnrBuffer::next() {
    if (damaged || offset >= end) {
        return std::nullopt;
    }
    if (!reader.has(offset, 1)) {
        return endDamaged();
    }
    const std::size_t length = reader.u8(offset);
    if (length < smhi::kValuesInRecord || offset + length > end || !reader.has(offset, length)) {
        return endDamaged();
    }
    const std::size_t slotBytes = length - smhi::kValuesInRecord;
    PnrRecord record;
    record.luid = luidFromBytes(reader.slice(offset + smhi::kLuidInRecord, kLuidSize).data());
    record.timestamp = reader.u64(offset + smhi::kTimestampInRecord);
    record.slots =
        reader.slice(offset + smhi::kValuesInRecord, slotBytes - slotBytes % smhi::kValueSize);
    offset += length;
    return record;
}

std::optional<PnrRecord> PnrBuffer::endDamaged() {
    damaged = true;
    return std::nullopt;
}

}  // namespace tavocal
