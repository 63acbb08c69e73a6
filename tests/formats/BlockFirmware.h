#pragma once

#include <map>
#include <memory>
#include <string>

#include "firmware/FakeKelu.h"
#include "firmware/SDT.h"
#include "sensors/CalibrationBlock.h"

namespace tavocal::test {

// A firmware that answers for the blocks of its sensors and for form factor and hinge. It refuses
// any sensor that it has no block for.
struct BlockFirmware {
    explicit BlockFirmware(std::map<std::string, CalibrationBlock> known)
        : blocks(std::move(known)) {
        kelu->onWrite = [this](const Bytes& request) { kelu->say(answerTo(request)); };
    }

    std::map<std::string, CalibrationBlock> blocks;  // by LUID text
    std::uint8_t formFactor = 4;
    std::uint8_t hinge = 3;
    const std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();
    SDT sdt{[this] { return kelu; }};

  private:
    Bytes answerTo(const Bytes& request) const {
        const bool asksForSettings = request.at(13) == 0x04;
        if (asksForSettings) {
            return ByteWriter().u8(0x84).zeros(8).u8(formFactor).zeros(3).u8(hinge).take();
        }
        const auto found = blocks.find(luidText(luidFromBytes(request.data() + 4)));
        if (found == blocks.end()) {
            return {0x84, 0, 0, 1};
        }
        const auto size = static_cast<std::uint16_t>(found->second.size());
        return ByteWriter().u8(0x84).zeros(21).u16(size).append(found->second).take();
    }
};

}  // namespace tavocal::test
