#include "formats/SensorXml.h"

#include <string>
#include <utility>

#include "base/Failures.h"
#include "calibration/CustomXml.h"
#include "calibration/SensorElement.h"
#include "calibration/XmlFields.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

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
    if (kinds.isInertial && sensor.sensorKind != SensorKind::Inertial) {
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
    if (kinds.hasSteps && sensor.sensorKind != SensorKind::AmbientLight) {
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
    const CalibrationHead head = readCalibrationHead(data);
    const PayloadKinds kinds = kindsOf(data);
    checkKinds(kinds, sensor, data);
    if (kinds.custom != nullptr) {
        CalibrationBlock block = blockHead(head.formatId, head.version);
        readCustomPayload(*kinds.custom, block);
        sensor.importCalibration(std::move(block));
    } else {
        sensor.loadFromFirmware(firmware);
        sensor.readCalibrationXml(data, head.formatId, head.version);
    }
}

}  // namespace

std::shared_ptr<Sensor> loadSensorNode(const XmlNode& node, SDT& firmware) {
    const XmlElement* element = node.asElement();
    if (element == nullptr || node.name() != kSensorElementName) {
        throw CalibrationException("Failed to load XML input file. Invalid Sensor node name: " +
                                   nodeName(node));
    }
    std::shared_ptr<Sensor> sensor = makeSensor(readLuid(*element));
    const XmlElement* data = findElement(*element, kCalibrationDataName);
    if (data == nullptr) {
        throw CalibrationException(
            "Failed to load XML input file. Invalid CalibrationData node name.");
    }
    readData(*data, *sensor, firmware);
    return sensor;
}

}  // namespace tavocal
