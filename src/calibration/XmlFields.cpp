#include "calibration/XmlFields.h"

#include <memory>

#include "base/Text.h"
#include "base/TextToNumber.h"
#include "xml/XmlAttribute.h"
#include "xml/XmlComment.h"
#include "xml/XmlElement.h"
#include "xml/XmlNames.h"
#include "xml/XmlText.h"

namespace tavocal {

namespace {

CalibrationException missingField(const XmlElement& element, std::wstring_view attribute) {
    return failureAt(element, "XML parsing error. Missing field " + toUtf8(attribute) + ".");
}

}  // namespace

XmlElement& addElement(XmlElement& parent, const std::wstring& name) {
    return parent.addChild(std::make_unique<XmlElement>(name));
}

void addComment(XmlElement& parent, const std::wstring& text) {
    parent.addChild(std::make_unique<XmlComment>(text));
}

XmlElement& addNumber(XmlElement& parent, const std::wstring& name, std::int64_t number) {
    XmlElement& element = addElement(parent, name);
    element.addChild(std::make_unique<XmlText>(std::to_wstring(number)));
    return element;
}

void setNumber(XmlElement& element, const std::wstring& attribute, std::int64_t number) {
    element.setAttribute(attribute, std::to_wstring(number));
}

const XmlElement* findElement(const XmlNode& parent, std::wstring_view name) {
    for (const auto& child : parent.children()) {
        if (child->asElement() != nullptr && sameName(child->name(), name)) {
            return child->asElement();
        }
    }
    return nullptr;
}

std::int32_t numberIn(const XmlElement& element) {
    return parseInt(narrow(element.innerText()));
}

std::string requiredText(const XmlElement& element, std::wstring_view attribute) {
    const XmlAttribute* found = element.getAttribute(attribute);
    if (found == nullptr) {
        throw missingField(element, attribute);
    }
    return narrow(found->value());
}

std::string requiredNonEmptyText(const XmlElement& element, std::wstring_view attribute) {
    std::string text = requiredText(element, attribute);
    if (text.empty()) {
        throw missingField(element, attribute);
    }
    return text;
}

std::int32_t requiredNumber(const XmlElement& element, std::wstring_view attribute) {
    return parseInt(requiredText(element, attribute));
}

std::string nodeName(const XmlNode& node) {
    return toUtf8(node.name());
}

CalibrationException failureAt(const XmlNode& node, const std::string& text) {
    return CalibrationException(text + " Line: " + nodeName(node));
}

}  // namespace tavocal
