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
        text += text.empty() ? "[" : " ";
        text += toUtf8(attribute->name()) + "=" + toUtf8(attribute->value());
    }
    return text.empty() ? text : text + "]";
}

std::string childrenOf(const XmlNode& node) {
    std::string text;
    for (const auto& child : node.children()) {
        text += (text.empty() ? "" : " ") + outline(*child);
    }
    return text;
}

}  // namespace

std::string outline(const XmlNode& node) {
    const std::string name = toUtf8(node.name());
    const std::string value = toUtf8(node.value());
    const std::string inner = childrenOf(node);
    if (node.asElement() != nullptr) {
        return name + attributesOf(*node.asElement()) + (inner.empty() ? "" : "(" + inner + ")");
    }
    switch (node.nodeType()) {
        case XmlNodeType::Text:
            return "'" + value + "'";
        case XmlNodeType::Comment:
            return "!" + value + "!";
        case XmlNodeType::Declaration:
            return "?" + name + "|" + value + "?";
        default:
            return inner;
    }
}

std::string outlineOf(const std::string& text) {
    XmlDocument document;
    const XmlResult result = document.loadBytes(text);
    const std::string code = std::to_string(static_cast<int>(result));
    return (result == XmlResult::Success ? "" : code + ": ") + outline(document);
}

}  // namespace tavocal::test
