#pragma once

#include <cstddef>
#include <cstdint>

// The messages between the tool and the sensor hub firmware: what stands where. All numbers are
// little-endian; a LUID travels as its 8 bytes. "At" constants are offsets from the beginning of
// the message unless they say otherwise.
namespace tavocal::smhi {

// The longest message that either side sends.
constexpr std::uint32_t kMaximumMessage = 4000;

// Every message starts with 4 bytes: command with kResponseFlag, two bytes that are 0, status.
constexpr std::size_t kHeaderSize = 4;
constexpr std::size_t kStatusAt = 3;
constexpr std::uint8_t kResponseFlag = 0x80;

// Commands.
constexpr std::uint8_t kReset = 2;
constexpr std::uint8_t kGetData = 4;
constexpr std::uint8_t kSetCalibration = 5;
constexpr std::uint8_t kGetProperty = 9;
constexpr std::uint8_t kSetProperty = 10;
constexpr std::uint8_t SMHI_PNR_SESSION_CONTROL_ID = 12;
constexpr std::uint8_t SMHI_PNR_REC_PUBLISH_BUF = 15;

// Status of an answer; anything else is a failure.
constexpr std::uint8_t kSuccess = 0;
constexpr std::uint8_t kInvalidParameter = 5;

// Where a request names a sensor: a LUID.
constexpr std::size_t kRequestLuidAt = 4;

// kGetData request: header, LUID, u16 data type.
constexpr std::size_t kDataTypeAt = 12;
constexpr std::uint16_t kCalibrationBlock = 0x0000;
constexpr std::uint16_t kSensorList = 0x0200;
constexpr std::uint16_t kPdt = 0x0400;

// Its answer with a calibration block: u16 length, then the block.
constexpr std::size_t kBlockLengthAt = 22;
constexpr std::size_t kBlockAt = 24;

// Its answer with the sensor list: u8 number of groups, then one group behind the other. A group:
// 11 bytes that nobody reads, u8 number of LUIDs, the LUIDs.
constexpr std::size_t kGroupCountAt = 8;
constexpr std::size_t kGroupsAt = 10;
constexpr std::size_t kLuidCountInGroup = 11;
constexpr std::size_t kLuidsInGroup = 12;

// Its answer with the PDT: one byte each.
constexpr std::size_t kFormFactorAt = 9;
constexpr std::size_t kHingeAt = 13;

// kSetCalibration request, with N the size of the block: header, LUID, u32 0, u32 N + 16, LUID,
// u16 N + 4, u16 kBlockMark, u16 kBlockKind, u16 N, the block. What mark and kind mean is the
// firmware's own.
constexpr std::size_t kLargestBlock = 0xFFFF - 4;
constexpr std::uint16_t kBlockMark = 0x0100;
constexpr std::uint16_t kBlockKind = 2;

// kGetProperty request: header, LUID, u16 property. Its answer has a u32 value.
constexpr std::size_t kPropertyAt = 12;
constexpr std::size_t kPropertyValueAt = 8;
// kSetProperty request: header, LUID, u16 property, u16 size of the value, the value.
constexpr std::size_t kPropertySizeAt = 14;
constexpr std::size_t kPropertyDataAt = 16;

// Properties, as the HID sensor usage tables number them.
constexpr std::uint16_t kMinReportInterval = 0x0304;  // u32, microseconds
constexpr std::uint16_t kReportInterval = 0x030E;     // u32, microseconds
constexpr std::uint16_t kChangeSensitivity = 0x030F;  // u32
constexpr std::uint16_t kReportingState = 0x0316;     // u8
constexpr std::uint8_t kStopReports = 1;
constexpr std::uint8_t kStartReports = 2;

// SMHI_PNR_SESSION_CONTROL_ID request: header, u8 type, u8 state, u8 number of LUIDs, the LUIDs.
// Its answer is the header.
constexpr std::size_t kSessionTypeAt = 4;
constexpr std::size_t kSessionStateAt = 5;
constexpr std::uint8_t kSessionType = 1;
constexpr std::uint8_t kSessionStart = 0;
constexpr std::uint8_t kSessionStop = 1;

// SMHI_PNR_REC_PUBLISH_BUF from the firmware: header, u32 size of the records, the records one
// behind the other. A record: u8 length of the whole record, LUID, u64 timestamp in microseconds,
// then as many i32 values as fit into the length.
constexpr std::size_t kRecordsSizeAt = 4;
constexpr std::size_t kRecordsAt = 8;
constexpr std::size_t kLuidInRecord = 1;
constexpr std::size_t kTimestampInRecord = 9;
constexpr std::size_t kValuesInRecord = 17;
constexpr std::size_t kValueSize = 4;

}  // namespace tavocal::smhi
