#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "base/Failures.h"
#include "firmware/PnrBuffer.h"
#include "firmware/SDT.h"
#include "fuzz/AnsweringKelu.h"

namespace {

void attempt(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const tavocal::SmhiException&) {
    } catch (const tavocal::CalibrationException&) {
    }
}

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
    tavocal::SDT sdt([&] { return std::make_shared<tavocal::fuzz::AnsweringKelu>(message); });
    attempt([&] { sdt.resetTavo(); });
    attempt([&] { sdt.getCalibrationData({}); });
    attempt([&] { sdt.setCalibrationData({}, message); });
    attempt([&] { sdt.enumerateSensors(); });
    attempt([&] { sdt.getFormFactor(); });
    attempt([&] { sdt.getHinge(); });
    attempt([&] { sdt.getMinReportInterval({}); });
    attempt([&] { sdt.startSampling({{}}, 10, 0.0); });
    attempt([&] { sdt.stopSampling({{}}); });
    walkRecords(message);
    return 0;
}
