#include "formats/SensorXml.h"

#include <array>
#include <variant>

#include "formats/XmlFields.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kSensorComment =
    L"Below are the calibration parameters to be applied to raw readings. Note that it is not an "
    L"issue that after calibration, sensor readings might exceed original range.";

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

}  // namespace

std::unique_ptr<XmlElement> makeSensorElement(const LUID& luid) {
    auto element = std::make_unique<XmlElement>(L"Sensor");
    for (const LuidField& field : kLuidFields) {
        std::visit(
            [&](auto member) { setNumber(*element, field.name, std::int64_t{luid.*member}); },
            field.member);
    }
    addComment(*element, kSensorComment);
    return element;
}

XmlElement& addCalibrationData(XmlElement& sensorElement, const CalibrationBlock& block) {
    XmlElement& data = addElement(sensorElement, L"CalibrationData");
    setNumber(data, L"Version", block[1]);
    setNumber(data, L"FormatId", block[0]);
    return data;
}

}  // namespace tavocal
