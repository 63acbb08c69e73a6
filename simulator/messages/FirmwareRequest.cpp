#include "simulator/messages/FirmwareRequest.h"

#include <array>
#include <stdexcept>

#include "firmware/SmhiLayout.h"

namespace tavocal::simulator {

namespace {

using Status = FirmwareStatus;

LUID luidAt(const ByteReader& reader, std::size_t offset) {
    return luidFromBytes(reader.slice(offset, kLuidSize).data());
}

Status requireSize(const ByteReader& reader, std::size_t size) {
    return reader.size() == size ? Status::Success : Status::Malformed;
}

Bytes rest(const ByteReader& reader, std::size_t offset) {
    const auto part = reader.slice(offset, reader.size() - offset);
    return Bytes(part.begin(), part.end());
}

Status readReset(const ByteReader& reader, FirmwareRequest& request) {
    request.command = FirmwareCommand::Reset;
    return requireSize(reader, smhi::kHeaderSize);
}

Status readGetData(const ByteReader& reader, FirmwareRequest& request) {
    request.luid = luidAt(reader, smhi::kRequestLuidAt);
    switch (reader.u16(smhi::kDataTypeAt)) {
        case smhi::kCalibrationBlock:
            request.command = FirmwareCommand::GetCalibration;
            break;
        case smhi::kSensorList:
            request.command = FirmwareCommand::Enumerate;
            break;
        case smhi::kPdt:
            request.command = FirmwareCommand::Pdt;
            break;
        default:
            request.command = FirmwareCommand::GetCalibration;
            return Status::InvalidParameter;
    }
    return requireSize(reader, smhi::kDataTypeAt + sizeof(std::uint16_t));
}

// The sizes are told three times, the sensor twice.
Status readSetCalibration(const ByteReader& reader, FirmwareRequest& request) {
    constexpr std::size_t kBlockBegin = 36;
    request.command = FirmwareCommand::SetCalibration;
    request.luid = luidAt(reader, smhi::kRequestLuidAt);
    const std::uint32_t size = reader.u16(34);
    const bool agrees = reader.u32(12) == 0 && reader.u32(16) == size + 16 &&
                        luidAt(reader, 20) == request.luid && reader.u16(28) == size + 4 &&
                        reader.u16(30) == smhi::kBlockMark && reader.u16(32) == smhi::kBlockKind &&
                        reader.size() == kBlockBegin + size;
    if (agrees) {
        request.data = rest(reader, kBlockBegin);
    }
    return agrees ? Status::Success : Status::Malformed;
}

Status readGetProperty(const ByteReader& reader, FirmwareRequest& request) {
    request.command = FirmwareCommand::GetProperty;
    request.luid = luidAt(reader, smhi::kRequestLuidAt);
    request.property = reader.u16(smhi::kPropertyAt);
    return requireSize(reader, smhi::kPropertyAt + sizeof(std::uint16_t));
}

Status readSetProperty(const ByteReader& reader, FirmwareRequest& request) {
    request.command = FirmwareCommand::SetProperty;
    request.luid = luidAt(reader, smhi::kRequestLuidAt);
    request.property = reader.u16(smhi::kPropertyAt);
    request.data = rest(reader, smhi::kPropertyDataAt);
    return request.data.size() == reader.u16(smhi::kPropertySizeAt) ? Status::Success
                                                                    : Status::Malformed;
}

// A request to start has as many LUIDs as it says; one to stop says none and has room for one.
Status readSession(const ByteReader& reader, FirmwareRequest& request) {
    constexpr std::size_t kCountAt = 6;
    constexpr std::size_t kLuidsAt = 7;
    const std::uint8_t state = reader.u8(smhi::kSessionStateAt);
    request.command = state == smhi::kSessionStop ? FirmwareCommand::Stop : FirmwareCommand::Start;
    const std::size_t count = reader.u8(kCountAt);
    if (reader.u8(smhi::kSessionTypeAt) != smhi::kSessionType || state > smhi::kSessionStop) {
        return Status::InvalidParameter;
    }
    if (state == smhi::kSessionStop) {
        const bool empty = count == 0 && luidAt(reader, kLuidsAt) == LUID{};
        return empty ? requireSize(reader, kLuidsAt + kLuidSize) : Status::Malformed;
    }
    for (std::size_t i = 0; i < count; ++i) {
        request.luids.push_back(luidAt(reader, kLuidsAt + i * kLuidSize));
    }
    return requireSize(reader, kLuidsAt + count * kLuidSize);
}

struct Reader {
    std::uint8_t command;
    Status (*read)(const ByteReader& reader, FirmwareRequest& request);
};

constexpr std::array<Reader, 6> kReaders = {{
    {smhi::kReset, readReset},
    {smhi::kGetData, readGetData},
    {smhi::kSetCalibration, readSetCalibration},
    {smhi::kGetProperty, readGetProperty},
    {smhi::kSetProperty, readSetProperty},
    {smhi::SMHI_PNR_SESSION_CONTROL_ID, readSession},
}};

bool isPlain(std::span<const std::uint8_t> message) {
    return (message[0] & smhi::kResponseFlag) == 0 && message[1] == 0 && message[2] == 0 &&
           message[3] == 0;
}

}  // namespace

FirmwareStatus readRequest(std::span<const std::uint8_t> message, FirmwareRequest& request) {
    const std::uint8_t command = message[0] & static_cast<std::uint8_t>(~smhi::kResponseFlag);
    for (const Reader& reader : kReaders) {
        if (reader.command == command) {
            try {
                const Status status = reader.read(ByteReader(message), request);
                return isPlain(message) ? status : Status::Malformed;
            } catch (const std::out_of_range&) {
                return Status::Malformed;
            }
        }
    }
    return Status::Unsupported;
}

}  // namespace tavocal::simulator
