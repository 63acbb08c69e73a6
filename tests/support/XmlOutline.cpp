#include "support/XmlOutline.h"

#include "base/Text.h"
#include "xml/XmlAttribute.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

namespace {

std::string attributesOf(const XmlElement& element) {
    std::string text;
    for (const auto& attribute : element.attributes()) {
        text += text.empty() ? "" : " ";
        text += toUtf8(attribute->name()) + "=" + toUtf8(attribute->value());
    }
    return text.empty() ? text : "[" + text + "]";
}

std::string childrenOf(const XmlNode& node) {
    std::string text;
    for (const auto& child : node.children()) {
        text += (text.empty() ? "" : " ") + outline(*child);
    }
    return text;
}

std::string elementOutline(const XmlElement& element) {
    const std::string inner = childrenOf(element);
    return toUtf8(element.name()) + attributesOf(element) +
           (inner.empty() ? "" : "(" + inner + ")");
}

}  // namespace

std::string outline(const XmlNode& node) {
    switch (node.nodeType()) {
        case XmlNodeType::Element:
            return elementOutline(*node.asElement());
        case XmlNodeType::Text:
            return "'" + toUtf8(node.value()) + "'";
        case XmlNodeType::Comment:
            return "!" + toUtf8(node.value()) + "!";
        case XmlNodeType::Declaration:
            return "?" + toUtf8(node.name()) + "|" + toUtf8(node.value()) + "?";
        case XmlNodeType::Document:
            return childrenOf(node);
        case XmlNodeType::Attribute:
            break;
    }
    return "unexpected node";
}

std::string outlineOf(const std::string& text) {
    XmlDocument document;
    const XmlResult result = document.loadBytes(text);
    const std::string code = std::to_string(static_cast<int>(result));
    return (result == XmlResult::Success ? "" : code + ": ") + outline(document);
}

}  // namespace tavocal::test
