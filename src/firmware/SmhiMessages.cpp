#include "firmware/SmhiMessages.h"

#include "firmware/SmhiLayout.h"

namespace tavocal::smhi {

namespace {

ByteWriter request(std::uint8_t command) {
    ByteWriter writer;
    writer.u8(command).zeros(kHeaderSize - 1);
    return writer;
}

ByteWriter sensorRequest(std::uint8_t command, const LUID& luid) {
    ByteWriter writer = request(command);
    writer.append(luidBytes(luid));
    return writer;
}

LUID readLuid(const ByteReader& reader, std::size_t offset) {
    return luidFromBytes(reader.slice(offset, kLuidSize).data());
}

}  // namespace

std::optional<Header> readHeader(std::span<const std::uint8_t> message) {
    if (message.size() < kHeaderSize) {
        return std::nullopt;
    }
    const std::uint8_t first = message[0];
    return Header{static_cast<std::uint8_t>(first & ~kResponseFlag), (first & kResponseFlag) != 0,
                  message[kStatusAt]};
}

bool isBuffer(const std::optional<Header>& header) {
    return header && header->command == SMHI_PNR_REC_PUBLISH_BUF;
}

bool isAnswerTo(const std::optional<Header>& header, std::uint8_t command) {
    return header && header->isResponse && header->command == command;
}

Bytes resetRequest() {
    return request(kReset).take();
}

Bytes getDataRequest(const LUID& luid, std::uint16_t dataType) {
    return sensorRequest(kGetData, luid).u16(dataType).take();
}

Bytes setCalibrationRequest(const LUID& luid, std::span<const std::uint8_t> block) {
    const auto size = static_cast<std::uint16_t>(block.size());
    return sensorRequest(kSetCalibration, luid)
        .u32(0)
        .u32(size + 16U)
        .append(luidBytes(luid))
        .u16(static_cast<std::uint16_t>(size + 4U))
        .u16(kBlockMark)
        .u16(kBlockKind)
        .u16(size)
        .append(block)
        .take();
}

Bytes getPropertyRequest(const LUID& luid, std::uint16_t property) {
    return sensorRequest(kGetProperty, luid).u16(property).take();
}

Bytes setPropertyRequest(const LUID& luid, std::uint16_t property, std::uint8_t value) {
    return sensorRequest(kSetProperty, luid).u16(property).u16(sizeof(value)).u8(value).take();
}

Bytes setPropertyRequest(const LUID& luid, std::uint16_t property, std::uint32_t value) {
    return sensorRequest(kSetProperty, luid).u16(property).u16(sizeof(value)).u32(value).take();
}

Bytes startSessionRequest() {
    return request(SMHI_PNR_SESSION_CONTROL_ID).u8(kSessionType).u8(kSessionStart).u8(0).take();
}

Bytes stopSessionRequest() {
    return request(SMHI_PNR_SESSION_CONTROL_ID)
        .u8(kSessionType)
        .u8(kSessionStop)
        .u8(0)
        // No LUID is named, but the firmware wants room for one.
        .zeros(kLuidSize)
        .take();
}

Bytes readCalibrationBlock(std::span<const std::uint8_t> answer) {
    const ByteReader reader(answer);
    const auto block = reader.slice(kBlockAt, reader.u16(kBlockLengthAt));
    return Bytes(block.begin(), block.end());
}

std::vector<LUID> readSensorList(std::span<const std::uint8_t> answer) {
    const ByteReader reader(answer);
    std::vector<LUID> luids;
    std::size_t group = kGroupsAt;
    for (std::size_t groups = reader.u8(kGroupCountAt); groups > 0; --groups) {
        const std::size_t end =
            group + kLuidsInGroup + kLuidSize * reader.u8(group + kLuidCountInGroup);
        for (std::size_t at = group + kLuidsInGroup; at < end; at += kLuidSize) {
            luids.push_back(readLuid(reader, at));
        }
        group = end;
    }
    return luids;
}

std::uint8_t readFormFactor(std::span<const std::uint8_t> answer) {
    return ByteReader(answer).u8(kFormFactorAt);
}

std::uint8_t readHinge(std::span<const std::uint8_t> answer) {
    return ByteReader(answer).u8(kHingeAt);
}

std::uint32_t readProperty(std::span<const std::uint8_t> answer) {
    return ByteReader(answer).u32(kPropertyValueAt);
}

}  // namespace tavocal::smhi
