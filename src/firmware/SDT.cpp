#include "firmware/SDT.h"

#include <limits>
#include <stdexcept>

#include "base/Failures.h"
#include "firmware/KeluBase.h"
#include "firmware/MakeKelu.h"
#include "firmware/SmhiLayout.h"
#include "firmware/SmhiMessages.h"
#include "log/Logger.h"

namespace tavocal {

namespace {

std::string resetFailure(int) {
    return "Reset Tavo command failed";
}

std::string getCalibrationFailure(int) {
    return "Get calibration data command failed";
}

std::string setCalibrationFailure(int status) {
    return status == smhi::kInvalidParameter
               ? "Set calibration data command failed due to invalid parameter"
               : "Set calibration data command failed";
}

std::string enumerateFailure(int) {
    return "Enumerate sensors command failed";
}

// The commands that read a setting of the device share it.
std::string settingFailure(int status) {
    return "Set PDT command  failed, status: " + std::to_string(status);
}

std::string samplingFailure(int) {
    return "Set sampling configuration data command failed";
}

constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t kMicrosecondsPerMs = 1000;

std::uint32_t microseconds(std::uint32_t ms) {
    return ms > kLargest / kMicrosecondsPerMs ? kLargest : ms * kMicrosecondsPerMs;
}

std::uint32_t cutToInteger(double value) {
    if (!(value > 0.0)) {
        return 0;
    }
    return value >= static_cast<double>(kLargest) ? kLargest : static_cast<std::uint32_t>(value);
}

}  // namespace

SDT::SDT() : SDT([] { return makeKelu(); }) {}

SDT::SDT(const ChannelFactory& makeChannel) : channel(makeChannel()) {}

Bytes SDT::transfer(const Bytes& request, FailureText failureText) {
    channel->Write(request);
    Bytes answer;
    channel->Read(answer, smhi::kMaximumMessage);
    const auto header = smhi::readHeader(answer);
    const std::uint8_t asked = request[0];
    if (!smhi::isAnswerTo(header, asked) || header->status != smhi::kSuccess) {
        channel->Close();
        throw SmhiException(failureText(header ? header->status : smhi::kSuccess));
    }
    return answer;
}

template <typename Reader>
auto SDT::command(const Bytes& request, FailureText failureText, Reader read) {
    channel->Connect();
    const Bytes answer = transfer(request, failureText);
    channel->Close();
    try {
        return read(answer);
    } catch (const std::out_of_range&) {
        throw SmhiException(failureText(smhi::kSuccess));
    }
}

void SDT::resetTavo() {
    TAVOCAL_LOG(Insane, "SDT::resetTavo", "Started SDT::resetTavo");
    command(smhi::resetRequest(), resetFailure, [](const Bytes&) {});
    TAVOCAL_LOG(Insane, "SDT::resetTavo", "Finished SDT::resetTavo");
}

Bytes SDT::getCalibrationData(const LUID& luid) {
    TAVOCAL_LOG(Insane, "SDT::getCalibrationData", "Started SDT::getCalibrationData");
    Bytes block = command(smhi::getDataRequest(luid, smhi::kCalibrationBlock),
                          getCalibrationFailure, smhi::readCalibrationBlock);
    TAVOCAL_LOG(Insane, "SDT::getCalibrationData", "Finished SDT::getCalibrationData");
    return block;
}

void SDT::setCalibrationData(const LUID& luid, const Bytes& block) {
    if (block.empty()) {
        return;
    }
    if (block.size() > smhi::kLargestBlock) {
        throw SmhiException(setCalibrationFailure(smhi::kInvalidParameter));
    }
    command(smhi::setCalibrationRequest(luid, block), setCalibrationFailure, [](const Bytes&) {});
}

std::vector<LUID> SDT::enumerateSensors() {
    return command(smhi::getDataRequest({}, smhi::kSensorList), enumerateFailure,
                   smhi::readSensorList);
}

std::uint8_t SDT::getFormFactor() {
    return command(smhi::getDataRequest({}, smhi::kPdt), settingFailure, smhi::readFormFactor);
}

std::uint8_t SDT::getHinge() {
    return command(smhi::getDataRequest({}, smhi::kPdt), settingFailure, smhi::readHinge);
}

std::uint32_t SDT::getMinReportInterval(const LUID& luid) {
    return command(smhi::getPropertyRequest(luid, smhi::kMinReportInterval), settingFailure,
                   smhi::readProperty) /
           kMicrosecondsPerMs;
}

template <typename Value>
void SDT::setProperty(const LUID& luid, std::uint16_t property, Value value) {
    transfer(smhi::setPropertyRequest(luid, property, value), samplingFailure);
}

void SDT::startSampling(const std::vector<SampledSensor>& sensors, std::uint32_t reportIntervalMs,
                        double changeSensitivity) {
    channel->Connect();
    for (const SampledSensor& sensor : sensors) {
        try {
            setProperty(sensor.luid, smhi::kReportInterval, microseconds(reportIntervalMs));
            setProperty(sensor.luid, smhi::kReportingState, smhi::kStartReports);
            setProperty(sensor.luid, smhi::kChangeSensitivity, cutToInteger(changeSensitivity));
        } catch (const SmhiException&) {
            throw CalibrationException("Failed to sample sensor " + sensor.displayName);
        }
    }
    channel->Close();
}

void SDT::stopSampling(const std::vector<SampledSensor>& sensors) {
    channel->Connect();
    for (const SampledSensor& sensor : sensors) {
        setProperty(sensor.luid, smhi::kReportingState, smhi::kStopReports);
    }
    channel->Close();
}

}  // namespace tavocal
