#include "formats/CalibrationXml.h"

#include <stdexcept>

#include "base/Failures.h"
#include "calibration/XmlFields.h"
#include "firmware/SDT.h"
#include "formats/SensorXml.h"
#include "platform/Files.h"
#include "sensors/model/Sensor.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kRootName = L"Tavo";
constexpr const wchar_t* kCalibrationName = L"Calibration";

// A broken reference in an attribute is as much a malformed file as a result code is.
void loadDocument(const std::string& path, XmlDocument& document) {
    bool loaded = false;
    try {
        loaded = document.load(path) == XmlResult::Success;
    } catch (const std::invalid_argument&) {
        loaded = false;
    }
    if (!loaded) {
        throw CalibrationException("Failed to load XML input file");
    }
}

const XmlElement& requiredChild(const XmlNode& parent, const wchar_t* name, const char* missing) {
    const XmlElement* child = findElement(parent, name);
    if (child == nullptr) {
        throw CalibrationException(missing);
    }
    return *child;
}

const XmlElement& calibrationOf(const XmlDocument& document) {
    const XmlElement& root = requiredChild(
        document, kRootName, "Failed to load XML input file. Tavo root node could not be located");
    return requiredChild(root, kCalibrationName,
                         "Failed to load XML input file. Calibration node could not be located");
}

}  // namespace

void saveCalibrationXml(const std::string& path,
                        const std::vector<std::shared_ptr<Sensor>>& sensors, bool useCurrent) {
    XmlDocument document;
    document.addChild(
        std::make_unique<XmlDeclaration>(L"xml", L"version=\"1.0\" encoding=\"UTF-8\""));
    XmlElement& root = document.addChild(std::make_unique<XmlElement>(kRootName));
    XmlElement& calibration = addElement(root, kCalibrationName);
    for (const auto& sensor : sensors) {
        if (auto element = sensor->sensorToXml(useCurrent)) {
            calibration.addChild(std::move(element));
        }
    }
    if (document.save(path) != XmlResult::Success) {
        throw CalibrationException("Failed to write to file");
    }
}

std::vector<std::shared_ptr<Sensor>> loadCalibrationXml(const std::string& path, SDT& firmware) {
    if (!platform::canRead(path)) {
        throw CalibrationException("Failed to open XML input file");
    }
    XmlDocument document;
    loadDocument(path, document);
    std::vector<std::shared_ptr<Sensor>> sensors;
    for (const auto& node : calibrationOf(document).children()) {
        sensors.push_back(loadSensorNode(*node, firmware));
    }
    return sensors;
}

}  // namespace tavocal
