#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>

#include "firmware/FakeKelu.h"
#include "firmware/SDT.h"
#include "sensors/CalibrationBlock.h"
#include "sensors/Luid.h"

namespace tavocal::test {

// A firmware that answers for the blocks of its sensors and for form factor and hinge. It refuses
// any sensor that it has no block for.
class BlockFirmware {
    std::shared_ptr<FakeKelu> kelu = std::make_shared<FakeKelu>();

  public:
    BlockFirmware() {
        kelu->onWrite = [this](const Bytes& request) { kelu->say(answerTo(request)); };
    }

    std::map<std::string, CalibrationBlock> blocks;  // by LUID text
    std::uint8_t formFactor = 0;
    std::uint8_t hinge = 0;

    SDT sdt{[this] { return kelu; }};

    std::size_t requestCount() const { return kelu->written().size(); }

  private:
    static constexpr std::size_t kLuidOffset = 4;
    static constexpr std::size_t kDataTypeHighByte = 13;

    Bytes answerTo(const Bytes& request) const {
        return request.at(kDataTypeHighByte) == 0x04 ? settings() : blockOf(request);
    }

    Bytes settings() const {
        Bytes answer(20, 0);
        answer[0] = 0x84;
        answer[9] = formFactor;
        answer[13] = hinge;
        return answer;
    }

    Bytes blockOf(const Bytes& request) const {
        const auto found = blocks.find(luidText(luidFromBytes(request.data() + kLuidOffset)));
        if (found == blocks.end()) {
            return {0x84, 0, 0, 1};
        }
        ByteWriter answer;
        answer.u8(0x84).zeros(21).u16(static_cast<std::uint16_t>(found->second.size()));
        return answer.append(found->second).take();
    }
};

}  // namespace tavocal::test
