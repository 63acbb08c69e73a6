#include "sensors/model/SensorReport.h"

#include <utility>

#include "base/Text.h"
#include "numerics/TextForms.h"
#include "sensors/model/Sensor.h"
#include "vocabulary/Unit.h"
#include "xml/XmlComment.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {

namespace {

std::unique_ptr<XmlElement> makeElement(const std::string& name) {
    return std::make_unique<XmlElement>(widen(name));
}

void setNarrow(XmlElement& element, const std::string& name, const std::string& value) {
    element.setAttribute(widen(name), widen(value));
}

void setNarrowUnlessEmpty(XmlElement& element, const std::string& name, const std::string& value) {
    if (!name.empty() && !value.empty()) {
        setNarrow(element, name, value);
    }
}

std::unique_ptr<XmlElement> makeArrayElement(const std::string& name, int rows, int cols) {
    auto element = makeElement(name);
    setNarrow(*element, "Rows", std::to_string(rows));
    setNarrow(*element, "Cols", std::to_string(cols));
    return element;
}

}  // namespace

SensorReport::SensorReport(const Sensor& owner) : sensor(owner) {}

SensorReport::~SensorReport() = default;

void SensorReport::ensureReportRoot() {
    if (root != nullptr) {
        return;
    }
    root = makeElement("Sensor");
    setNarrow(*root, "LUID", sensor.getLuidText());
    setNarrow(*root, "Type", sensor.name);
    setNarrow(*root, "SamplingUnit", unitToText(sensor.samplingUnit));
    setNarrow(*root, "Success", "false");
    setNarrow(*root, "IsPrimary", sensor.isPrimary() ? "true" : "false");
    reportNode = root.get();
}

bool SensorReport::exists() const {
    return root != nullptr;
}

void SensorReport::setAttribute(const std::string& name, const std::string& value) {
    ensureReportRoot();
    setNarrow(*reportNode, name, value);
}

void SensorReport::setRootAttribute(const std::string& name, const std::string& value) {
    ensureReportRoot();
    setNarrow(*root, name, value);
}

void SensorReport::beginSubtree(const std::string& name) {
    ensureReportRoot();
    auto element = makeElement(name);
    reportNode = element.get();
    root->addChild(std::move(element));
}

void SensorReport::endSubtree() {
    reportNode = root.get();
}

void SensorReport::addVector(const Vector& vector, const std::string& name,
                             const std::string& comment) {
    addReportItem(makeArrayElement(name, 1, vector.size()), compactRow(vector), comment);
}

void SensorReport::addMatrix(const Matrix& matrix, const std::string& name,
                             const std::string& comment) {
    addReportItem(makeArrayElement(name, matrix.rows(), matrix.cols()), compactMatrix(matrix),
                  comment);
}

void SensorReport::addScalar(double value, const std::string& name, const std::string& comment) {
    addReportItem(makeElement(name), fixedText(value), comment);
}

void SensorReport::addAttributed(const std::string& name, const std::string& comment,
                                 const std::string& text, const std::string& key1,
                                 const std::string& value1, const std::string& key2,
                                 const std::string& value2) {
    auto element = makeElement(name);
    setNarrowUnlessEmpty(*element, key1, value1);
    setNarrowUnlessEmpty(*element, key2, value2);
    addReportItem(std::move(element), text, comment);
}

void SensorReport::addComment(const std::string& text) {
    addReportItem(nullptr, {}, text);
}

std::unique_ptr<XmlElement> SensorReport::release() {
    reportNode = nullptr;
    return std::move(root);
}

void SensorReport::addReportItem(std::unique_ptr<XmlElement> element, const std::string& text,
                                 const std::string& comment) {
    ensureReportRoot();
    if (!comment.empty()) {
        reportNode->addChild(std::make_unique<XmlComment>(widen(comment)));
    }
    if (element != nullptr) {
        auto values = makeElement("Values");
        values->addChild(std::make_unique<XmlText>(widen(text)));
        element->addChild(std::move(values));
        reportNode->addChild(std::move(element));
    }
}

}  // namespace tavocal
