#include "xml/XmlNode.h"

#include "xml/XmlNames.h"

namespace tavocal {

XmlChildren::Iterator& XmlChildren::Iterator::operator++() {
    node = node->nextSibling();
    return *this;
}

XmlNode::XmlNode() = default;

XmlNode::~XmlNode() {
    clearChildren();
}

// What a child holds is moved to the place of the child before that goes.
void XmlNode::clearChildren() {
    while (first) {
        const std::unique_ptr<XmlNode> child = std::move(first);
        if (child->first) {
            child->last->next = std::move(child->next);
            first = std::move(child->first);
        } else {
            first = std::move(child->next);
        }
    }
    last = nullptr;
}

const XmlNode* XmlNode::findChild(std::wstring_view name) const {
    for (const XmlNode* child : children()) {
        if (sameName(child->name(), name)) {
            return child;
        }
    }
    return nullptr;
}

void XmlNode::append(std::unique_ptr<XmlNode> child) {
    XmlNode* const added = child.get();
    (last == nullptr ? first : last->next) = std::move(child);
    last = added;
}

void XmlNode::addParsedChild(std::unique_ptr<XmlNode> child) {
    child->parentNode = this;
    append(std::move(child));
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
