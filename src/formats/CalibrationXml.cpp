#include "formats/CalibrationXml.h"

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

const XmlNode& requiredChild(const XmlNode& parent, const wchar_t* name, const char* missing) {
    const XmlNode* child = parent.findChild(name);
    if (child == nullptr) {
        throw CalibrationException(missing);
    }
    return *child;
}

const XmlNode& calibrationOf(const XmlDocument& document) {
    const XmlNode& root = requiredChild(
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
    if (document.load(path) != XmlResult::Success) {
        throw CalibrationException("Failed to load XML input file");
    }
    std::vector<std::shared_ptr<Sensor>> sensors;
    for (const auto& node : calibrationOf(document).children()) {
        sensors.push_back(loadSensorNode(*node, firmware));
    }
    return sensors;
}

}  // namespace tavocal
