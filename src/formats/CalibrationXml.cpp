#include "formats/CalibrationXml.h"

#include "base/Failures.h"
#include "formats/XmlFields.h"
#include "sensors/Sensor.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kRootName = L"Tavo";
constexpr const wchar_t* kCalibrationName = L"Calibration";

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

}  // namespace tavocal
