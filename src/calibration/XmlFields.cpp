#include "calibration/XmlFields.h"

#include <memory>

#include "base/Text.h"
#include "base/TextToNumber.h"
#include "xml/XmlAttribute.h"
#include "xml/XmlComment.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {

namespace {

CalibrationException missingField(const XmlNode& node, std::wstring_view attribute) {
    return failureAt(node, "XML parsing error. Missing field " + toUtf8(attribute) + ".");
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

std::int32_t numberIn(const XmlNode& node) {
    return parseInt(narrow(node.innerText()));
}

std::string requiredText(const XmlNode& node, std::wstring_view attribute) {
    const XmlElement* element = node.asElement();
    const XmlAttribute* found = element == nullptr ? nullptr : element->getAttribute(attribute);
    if (found == nullptr) {
        throw missingField(node, attribute);
    }
    return narrow(found->value());
}

std::string requiredNonEmptyText(const XmlNode& node, std::wstring_view attribute) {
    std::string text = requiredText(node, attribute);
    if (text.empty()) {
        throw missingField(node, attribute);
    }
    return text;
}

std::int32_t requiredNumber(const XmlNode& node, std::wstring_view attribute) {
    return parseInt(requiredText(node, attribute));
}

std::string nodeName(const XmlNode& node) {
    return toUtf8(node.name());
}

CalibrationException failureAt(const XmlNode& node, const std::string& text) {
    return CalibrationException(text + " Line: " + nodeName(node));
}

}  // namespace tavocal
