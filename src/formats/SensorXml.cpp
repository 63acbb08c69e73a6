#include "formats/SensorXml.h"

#include <array>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "base/Failures.h"
#include "base/Text.h"
#include "formats/CustomXml.h"
#include "formats/XmlFields.h"
#include "sensors/Sensor.h"
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

constexpr const wchar_t* kSensorName = L"Sensor";
constexpr const wchar_t* kDataName = L"CalibrationData";
constexpr const wchar_t* kVersionName = L"Version";
constexpr const wchar_t* kFormatIdName = L"FormatId";

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
Unsigned readUnsigned(const XmlElement& element, const wchar_t* name) {
    const std::int32_t number = requiredNumber(element, name);
    if (number < 0 || number > std::numeric_limits<Unsigned>::max()) {
        throw failureAt(element, "XML parsing error. " + toUtf8(name) + " has invalid value.");
    }
    return static_cast<Unsigned>(number);
}

LUID readLuid(const XmlElement& element) {
    LUID luid;
    for (const LuidField& field : kLuidFields) {
        std::visit(
            [&](auto member) {
                auto& number = luid.*member;
                number = readUnsigned<std::decay_t<decltype(number)>>(element, field.name);
            },
            field.member);
    }
    return luid;
}

// What "CalibrationData" holds.
struct PayloadKinds {
    bool isStatic;
    bool hasWhiteNoise;
    bool isInertial;
    bool hasSteps;
    const XmlElement* custom;  // null if there is none
};

PayloadKinds kindsOf(const XmlElement& data) {
    const auto has = [&data](const wchar_t* name) { return findElement(data, name) != nullptr; };
    PayloadKinds kinds{};
    kinds.isStatic = has(L"AxisMapping") || has(L"Matrix") || has(L"Scale") || has(L"ScaleFactor");
    kinds.hasWhiteNoise = has(L"WhiteNoise");
    kinds.isInertial = kinds.isStatic || kinds.hasWhiteNoise || has(L"Offset");
    kinds.hasSteps = has(L"Steps");
    kinds.custom = findElement(data, L"OEMCustomData");
    return kinds;
}

void checkInertialKinds(const PayloadKinds& kinds, const Sensor& sensor) {
    const std::string title = "XML parsing error. Sensor " + sensor.getLuidText();
    if (kinds.isInertial && sensor.sensorKind != Sensor::kInertialKind) {
        throw CalibrationException(
            title + " was not recognized as Inertial sensor. Invalid calibration format");
    }
    const bool contradictsFlags = kinds.hasWhiteNoise ? kinds.isStatic || sensor.isStatic()
                                                      : kinds.isStatic && sensor.isDynamic();
    if (contradictsFlags) {
        throw CalibrationException(title + " has invalid format");
    }
}

void checkKinds(const PayloadKinds& kinds, const Sensor& sensor, const XmlElement& data) {
    checkInertialKinds(kinds, sensor);
    const std::string luid = sensor.getLuidText();
    if (kinds.hasSteps && sensor.sensorKind != Sensor::kAmbientLightKind) {
        throw failureAt(data, "XML parsing error. Sensor " + luid +
                                  " was not recognized as Ambient Light sensor. Invalid "
                                  "calibration format.");
    }
    const bool isKnown = kinds.isInertial || kinds.hasSteps;
    if (kinds.custom != nullptr && isKnown) {
        throw failureAt(data, "XML parsing error. Multiple data for sensor " + luid + ".");
    }
    if (kinds.custom == nullptr && !isKnown) {
        throw failureAt(
            data, "XML parsing error. No calibration data was specified for sensor " + luid + ".");
    }
}

void readData(const XmlElement& data, Sensor& sensor, SDT& firmware) {
    const int version = readUnsigned<std::uint8_t>(data, kVersionName);
    const int formatId = readUnsigned<std::uint8_t>(data, kFormatIdName);
    const PayloadKinds kinds = kindsOf(data);
    checkKinds(kinds, sensor, data);
    if (kinds.custom != nullptr) {
        CalibrationBlock block = blockHead(formatId, version);
        readCustomPayload(*kinds.custom, block);
        sensor.importCalibration(std::move(block));
    } else {
        sensor.loadFromFirmware(firmware);
        sensor.readCalibrationXml(data, formatId, version);
    }
}

}  // namespace

std::unique_ptr<XmlElement> makeSensorElement(const LUID& luid) {
    auto element = std::make_unique<XmlElement>(kSensorName);
    for (const LuidField& field : kLuidFields) {
        std::visit(
            [&](auto member) { setNumber(*element, field.name, std::int64_t{luid.*member}); },
            field.member);
    }
    addComment(*element, kSensorComment);
    return element;
}

XmlElement& addCalibrationData(XmlElement& sensorElement, const CalibrationBlock& block) {
    XmlElement& data = addElement(sensorElement, kDataName);
    setNumber(data, kVersionName, block[1]);
    setNumber(data, kFormatIdName, block[0]);
    return data;
}

std::shared_ptr<Sensor> loadSensorNode(const XmlNode& node, SDT& firmware) {
    const XmlElement* element = node.asElement();
    if (element == nullptr || node.name() != kSensorName) {
        throw CalibrationException("Failed to load XML input file. Invalid Sensor node name: " +
                                   nodeName(node));
    }
    std::shared_ptr<Sensor> sensor = makeSensor(readLuid(*element));
    const XmlElement* data = findElement(*element, kDataName);
    if (data == nullptr) {
        throw CalibrationException(
            "Failed to load XML input file. Invalid CalibrationData node name.");
    }
    readData(*data, *sensor, firmware);
    return sensor;
}

}  // namespace tavocal
