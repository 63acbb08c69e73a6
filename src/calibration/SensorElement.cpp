#include "calibration/SensorElement.h"

#include <array>
#include <limits>
#include <string>
#include <type_traits>
#include <variant>

#include "base/Failures.h"
#include "base/Text.h"
#include "calibration/XmlFields.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kSensorComment =
    L"Below are the calibration parameters to be applied to raw readings. Note that it is not an "
    L"issue that after calibration, sensor readings might exceed original range.";

constexpr const wchar_t* kVersionName = L"Version";
constexpr const wchar_t* kFormatIdName = L"FormatId";

struct LuidField {
    const wchar_t* name;
    std::variant<std::uint16_t LUID::*, std::uint8_t LUID::*> member;
};

// In the order of the file.
const std::array<LuidField, 5> kLuidFields = {{
    {L"SensorTypeId", &LUID::SensorTypeId},
    {L"SubTypeId", &LUID::SubTypeId},
    {L"VendorId", &LUID::VendorId},
    {L"InstanceId", &LUID::InstanceId},
    {L"Flags", &LUID::Flags},
}};

// An attribute that is an unsigned number of that type.
template <typename Unsigned>
Unsigned readUnsigned(const XmlNode& node, const wchar_t* name) {
    const std::int32_t number = requiredNumber(node, name);
    if (number < 0 || number > std::numeric_limits<Unsigned>::max()) {
        throw failureAt(node, "XML parsing error. " + toUtf8(name) + " has invalid value.");
    }
    return static_cast<Unsigned>(number);
}

}  // namespace

std::unique_ptr<XmlElement> makeSensorElement(const LUID& luid) {
    auto element = std::make_unique<XmlElement>(kSensorElementName);
    for (const LuidField& field : kLuidFields) {
        std::visit(
            [&](auto member) { setNumber(*element, field.name, std::int64_t{luid.*member}); },
            field.member);
    }
    addComment(*element, kSensorComment);
    return element;
}

LUID readLuid(const XmlNode& sensorNode) {
    LUID luid;
    for (const LuidField& field : kLuidFields) {
        std::visit(
            [&](auto member) {
                auto& number = luid.*member;
                number = readUnsigned<std::decay_t<decltype(number)>>(sensorNode, field.name);
            },
            field.member);
    }
    return luid;
}

XmlElement& addCalibrationData(XmlElement& sensorElement, const CalibrationBlock& block) {
    XmlElement& data = addElement(sensorElement, kCalibrationDataName);
    setNumber(data, kVersionName, block.size() < kBlockHeadSize ? 0 : block[1]);
    setNumber(data, kFormatIdName, block[0]);
    return data;
}

CalibrationHead readCalibrationHead(const XmlNode& data) {
    const int version = readUnsigned<std::uint8_t>(data, kVersionName);
    const int formatId = readUnsigned<std::uint8_t>(data, kFormatIdName);
    return {formatId, version};
}

}  // namespace tavocal
