#include "simulator/messages/SpoiledAnswer.h"

#include <algorithm>

#include "firmware/SmhiLayout.h"

namespace tavocal::simulator {

namespace {

using Kind = FirmwareFaultKind;

Bytes headWithStatus(const Bytes& answer, FirmwareStatus status) {
    Bytes head(answer.begin(), answer.begin() + smhi::kHeaderSize);
    head[smhi::kStatusAt] = static_cast<std::uint8_t>(status);
    return head;
}

// The last byte that anybody needs is gone.
Bytes cutShort(Bytes answer, FirmwareCommand command) {
    const std::size_t needed = command == FirmwareCommand::Pdt ? smhi::kHingeAt + 1 : answer.size();
    answer.resize(needed - 1);
    return answer;
}

Bytes withByte(Bytes answer, std::size_t offset, std::uint8_t value) {
    answer[offset] = value;
    return answer;
}

}  // namespace

bool spoils(const FirmwareFault& fault, FirmwareCommand command) {
    switch (fault.kind) {
        case Kind::Refused:
        case Kind::Invalid:
        case Kind::Short:
        case Kind::Empty:
        case Kind::Wrong:
        case Kind::Unflagged:
        case Kind::Silent:
        case Kind::HangUp:
            return fault.command == command;
        case Kind::OverlongBlock:
            return command == FirmwareCommand::GetCalibration;
        case Kind::OverlongList:
            return command == FirmwareCommand::Enumerate;
        default:
            return false;
    }
}

bool preventsCommand(const FirmwareFault& fault) {
    return fault.is(Kind::Refused) || fault.is(Kind::Invalid) || fault.is(Kind::Silent) ||
           fault.is(Kind::HangUp);
}

Bytes spoiled(Bytes answer, const FirmwareFault& fault) {
    constexpr std::uint8_t kMany = 0xFF;
    constexpr std::uint8_t kOtherCommand = 1;
    switch (fault.kind) {
        case Kind::Refused:
            return headWithStatus(answer, FirmwareStatus::Unsupported);
        case Kind::Invalid:
            return headWithStatus(answer, FirmwareStatus::InvalidParameter);
        case Kind::Short:
            return cutShort(std::move(answer), fault.command);
        case Kind::Empty:
            return Bytes(1, answer[0]);
        case Kind::Wrong:
            return withByte(answer, 0, smhi::kResponseFlag | kOtherCommand);
        case Kind::Unflagged:
            return withByte(answer, 0, answer[0] & static_cast<std::uint8_t>(~smhi::kResponseFlag));
        case Kind::OverlongBlock:
            return withByte(answer, smhi::kBlockLengthAt + 1, kMany);
        case Kind::OverlongList:
            return withByte(answer, smhi::kGroupsAt + smhi::kLuidCountInGroup, kMany);
        default:
            return {};
    }
}

}  // namespace tavocal::simulator
