#include <cstddef>
#include <cstdint>

#include "firmware/PnrBuffer.h"
#include "firmware/SDT.h"
#include "fuzz/AnsweringKelu.h"
#include "fuzz/Attempt.h"

namespace {

void walkRecords(const tavocal::Bytes& message) {
    tavocal::PnrBuffer buffer(message);
    while (const auto record = buffer.next()) {
        for (std::size_t i = 0; i < record->valueCount(); ++i) {
            static_cast<void>(record->value(i));
        }
    }
}

}  // namespace

// The bytes are one message of the firmware: the answer to each command, or a published buffer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tavocal::Bytes message(data, data + size);
    tavocal::SDT sdt = tavocal::fuzz::answeringFirmware({message});
    tavocal::fuzz::attempt([&] { sdt.resetTavo(); });
    tavocal::fuzz::attempt([&] { sdt.getCalibrationData({}); });
    tavocal::fuzz::attempt([&] { sdt.setCalibrationData({}, message); });
    tavocal::fuzz::attempt([&] { sdt.enumerateSensors(); });
    tavocal::fuzz::attempt([&] { sdt.getFormFactor(); });
    tavocal::fuzz::attempt([&] { sdt.getHinge(); });
    tavocal::fuzz::attempt([&] { sdt.getMinReportInterval({}); });
    tavocal::fuzz::attempt([&] { sdt.startSampling({{}}, 10, 0.0); });
    tavocal::fuzz::attempt([&] { sdt.stopSampling({{}}); });
    walkRecords(message);
    return 0;
}
