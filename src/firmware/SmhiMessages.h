#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/Bytes.h"
#include "vocabulary/Luid.h"

// Builds the requests to the firmware and reads its answers; SmhiLayout.h says what stands where.
namespace tavocal::smhi {

struct Header {
    std::uint8_t command = 0;
    bool isResponse = false;
    std::uint8_t status = 0;
};

// Nothing for a message that is too short to have one.
std::optional<Header> readHeader(std::span<const std::uint8_t> message);

// The message is one of the samples that a record session publishes.
bool isBuffer(const std::optional<Header>& header);

// The message is an answer to `command`, whatever its status.
bool isAnswerTo(const std::optional<Header>& header, std::uint8_t command);

Bytes resetRequest();
// `dataType` is kCalibrationBlock, kSensorList or kPdt; the latter two take any LUID.
Bytes getDataRequest(const LUID& luid, std::uint16_t dataType);
// REQUIRES: at most kLargestBlock bytes in `block`.
Bytes setCalibrationRequest(const LUID& luid, std::span<const std::uint8_t> block);
Bytes getPropertyRequest(const LUID& luid, std::uint16_t property);
Bytes setPropertyRequest(const LUID& luid, std::uint16_t property, std::uint8_t value);
Bytes setPropertyRequest(const LUID& luid, std::uint16_t property, std::uint32_t value);
// Names no sensor: the firmware records whatever the sensors publish.
Bytes startSessionRequest();
Bytes stopSessionRequest();

// Each reads a successful answer, and throws std::out_of_range if that is shorter than what it
// says that it holds. Bytes beyond that are ignored.
Bytes readCalibrationBlock(std::span<const std::uint8_t> answer);
std::vector<LUID> readSensorList(std::span<const std::uint8_t> answer);
std::uint8_t readFormFactor(std::span<const std::uint8_t> answer);
std::uint8_t readHinge(std::span<const std::uint8_t> answer);
std::uint32_t readProperty(std::span<const std::uint8_t> answer);

}  // namespace tavocal::smhi
