#include "simulator/messages/FirmwareAnswer.h"

#include "firmware/SmhiLayout.h"

namespace tavocal::simulator {

namespace {

ByteWriter header(std::uint8_t command, FirmwareStatus status = FirmwareStatus::Success) {
    ByteWriter writer;
    writer.u8(command | smhi::kResponseFlag).u8(0).u8(0).u8(static_cast<std::uint8_t>(status));
    return writer;
}

// What nobody reads has to be passed over, so it isn't zero.
void writeGroup(ByteWriter& writer, const std::vector<LUID>& group) {
    const std::uint16_t type = group.empty() ? std::uint16_t{0} : group[0].SensorTypeId;
    writer.u16(type).u32(0x01020304).u32(0x05060708).u8(0xFF);
    writer.u8(static_cast<std::uint8_t>(group.size()));
    for (const LUID& luid : group) {
        writer.append(luidBytes(luid));
    }
}

}  // namespace

Bytes headerAnswer(std::uint8_t command, FirmwareStatus status) {
    return header(command, status).take();
}

// The same fields as in the request that sets a block.
Bytes blockAnswer(const LUID& luid, std::span<const std::uint8_t> block) {
    const auto size = static_cast<std::uint16_t>(block.size());
    return header(smhi::kGetData)
        .u32(size + 16U)
        .append(luidBytes(luid))
        .u16(static_cast<std::uint16_t>(size + 4U))
        .u16(smhi::kBlockMark)
        .u16(smhi::kBlockKind)
        .u16(size)
        .append(block)
        .take();
}

Bytes sensorListAnswer(const SensorGroups& groups) {
    ByteWriter list;
    list.u8(static_cast<std::uint8_t>(groups.size())).u8(0);
    for (const auto& group : groups) {
        writeGroup(list, group);
    }
    const auto size = static_cast<std::uint32_t>(list.size());
    return header(smhi::kGetData).u32(size).append(list.take()).take();
}

Bytes pdtAnswer(std::uint8_t formFactor, std::uint8_t hinge) {
    constexpr std::uint32_t kSize = 8;
    constexpr std::uint8_t kVersion = 1;
    return header(smhi::kGetData)
        .u32(kSize)
        .u8(kVersion)
        .u8(formFactor)
        .zeros(3)
        .u8(hinge)
        .zeros(2)
        .take();
}

Bytes propertyAnswer(std::uint16_t property, std::uint32_t value) {
    return header(smhi::kGetProperty).u16(property).u16(sizeof(value)).u32(value).take();
}

// The longest message, and a version.
Bytes greeting() {
    return ByteWriter().u32(smhi::kMaximumMessage).u8(1).take();
}

}  // namespace tavocal::simulator
