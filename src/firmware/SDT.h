#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "vocabulary/Luid.h"

namespace tavocal {

class KeluBase;

// A sensor to switch on or off, with the name for a failure's text.
struct SampledSensor {
    LUID luid;
    std::string displayName;
};

// The firmware's commands but for the record session. A command is one request and one answer on a
// fresh connection, without a retry. An SDT may be made for a single operation; one thread uses it.
//
// A status other than success, and an answer that is too short, is no answer or answers another
// command, closes the channel and throws the SmhiException of the command. A failure of the channel
// passes through and leaves the channel open for the next operation.
class SDT {
  public:
    using ChannelFactory = std::function<std::shared_ptr<KeluBase>()>;

    // Over a channel of this platform.
    SDT();
    explicit SDT(const ChannelFactory& makeChannel);

    // Restarts the firmware's sensor service.
    void resetTavo();

    Bytes getCalibrationData(const LUID& luid);
    // Does nothing at all for an empty block. A block that is too long for the request fails like
    // one that the firmware finds invalid.
    void setCalibrationData(const LUID& luid, const Bytes& block);

    // Every sensor of the firmware, in its order.
    std::vector<LUID> enumerateSensors();

    // Switches reports on. A failure at a sensor is a CalibrationException with its name; the
    // sensors before it stay switched on. An interval or a sensitivity (cut to an integer) that the
    // firmware has no number for becomes the nearest one it has.
    void startSampling(const std::vector<SampledSensor>& sensors, std::uint32_t reportIntervalMs,
                       double changeSensitivity);
    void stopSampling(const std::vector<SampledSensor>& sensors);

    // A FormFactor and a Hinge value as the firmware has it; it may be one that nobody knows.
    std::uint8_t getFormFactor();
    std::uint8_t getHinge();

    // Milliseconds, rounded down.
    std::uint32_t getMinReportInterval(const LUID& luid);

  private:
    // The text of a command's failure, from the status of its answer.
    using FailureText = std::string (*)(int status);

    Bytes transfer(const Bytes& request, FailureText failureText);
    template <typename Reader>
    auto command(const Bytes& request, FailureText failureText, Reader read);
    template <typename Value>
    void setProperty(const LUID& luid, std::uint16_t property, Value value);

    std::shared_ptr<KeluBase> channel;
};

}  // namespace tavocal
