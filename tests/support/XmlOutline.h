#pragma once

#include "base/Text.h"
#include "xml/XmlAttribute.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal::test {

// A tree in one line, to compare with: elements as name[attribute=value ...](children), texts as
// 'text', comments as !text!, declarations as ?name|text?, neighbours with a blank in between.
inline std::string outline(const XmlNode& node) {
    std::string attributes;
    std::string inner;
    for (const auto& child : node.children()) {
        inner += (inner.empty() ? "" : " ") + outline(*child);
    }
    switch (node.nodeType()) {
        case XmlNodeType::Element:
            for (const XmlAttribute& attribute : node.asElement()->attributes()) {
                attributes += attributes.empty() ? "[" : " ";
                attributes += toUtf8(attribute.name()) + "=" + toUtf8(attribute.value());
            }
            return toUtf8(node.name()) + attributes + (attributes.empty() ? "" : "]") +
                   (inner.empty() ? "" : "(" + inner + ")");
        case XmlNodeType::Text:
            return "'" + toUtf8(node.value()) + "'";
        case XmlNodeType::Comment:
            return "!" + toUtf8(node.value()) + "!";
        case XmlNodeType::Declaration:
            return "?" + toUtf8(node.name()) + "|" + toUtf8(node.value()) + "?";
        default:
            return inner;
    }
}

// The outline of the document that `text` loads as, behind the result code if that isn't 0.
inline std::string outlineOf(const std::string& text) {
    XmlDocument document;
    const XmlResult result = document.loadBytes(text);
    const std::string code = std::to_string(static_cast<int>(result));
    return (result == XmlResult::Success ? "" : code + ": ") + outline(document);
}

}  // namespace tavocal::test
