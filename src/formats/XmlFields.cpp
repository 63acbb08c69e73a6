#include "formats/XmlFields.h"

#include <memory>

#include "xml/XmlComment.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {

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

}  // namespace tavocal
