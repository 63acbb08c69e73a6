#include "xml/XmlNode.h"

#include <algorithm>

#include "xml/XmlNames.h"

namespace tavocal {

XmlNode::XmlNode(XmlNodeType nodeType) : type(nodeType) {}

XmlNode::~XmlNode() {
    clearChildren();
}

void XmlNode::clearChildren() {
    while (!childNodes.empty()) {
        childNodes.pop_back();
    }
}

std::wstring XmlNode::innerXml() const {
    return std::wstring(texts.innerXml);
}

const XmlNode* XmlNode::firstChild() const {
    return childNodes.empty() ? nullptr : childNodes.front().get();
}

const XmlNode* XmlNode::lastChild() const {
    return childNodes.empty() ? nullptr : childNodes.back().get();
}

const XmlNode* XmlNode::findChild(std::wstring_view name) const {
    const auto found =
        std::find_if(childNodes.begin(), childNodes.end(),
                     [name](const auto& child) { return sameName(child->name(), name); });
    return found == childNodes.end() ? nullptr : found->get();
}

void XmlNode::setContent(std::wstring_view content) {
    texts.value = content;
    texts.innerText = content;
}

void XmlNode::addParsedChild(std::unique_ptr<XmlNode> child) {
    child->parentNode = this;
    addChild(std::move(child));
}

XmlResult XmlNode::parse(XmlCursor& /*cursor*/) {
    return XmlResult::NoParser;
}

std::wstring XmlNode::toString(std::uint8_t level) const {
    std::wstring text;
    print(text, level);
    return text;
}

void XmlNode::print(std::wstring& /*out*/, std::uint8_t /*level*/) const {}

void appendIndentation(std::wstring& out, std::uint8_t level) {
    constexpr std::size_t kBlanksPerLevel = 4;
    out.append(kBlanksPerLevel * level, L' ');
}

}  // namespace tavocal
