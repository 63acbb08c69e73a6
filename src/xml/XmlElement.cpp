#include "xml/XmlElement.h"

#include <algorithm>

#include "xml/XmlAttribute.h"
#include "xml/XmlCursor.h"
#include "xml/XmlNames.h"
#include "xml/XmlParser.h"
#include "xml/XmlText.h"

namespace tavocal {

namespace {

template <typename Attributes>
auto findAttribute(Attributes& attributes, std::wstring_view name) {
    return std::find_if(attributes.begin(), attributes.end(),
                        [name](const auto& attribute) { return sameName(attribute.name(), name); });
}

// Lets `take` step over each attribute of a start tag.
template <typename Take>
void forEachAttribute(XmlCursor& cursor, Take take) {
    while (!cursor.atEnd()) {
        take(cursor);
        if (!cursor.atBlank()) {
            return;
        }
        cursor.advance();
    }
}

std::size_t attributeCount(XmlCursor cursor) {
    std::size_t count = 0;
    forEachAttribute(cursor, [&count](XmlCursor& at) {
        XmlAttribute::skip(at);
        ++count;
    });
    return count;
}

bool atTagEnd(const XmlCursor& cursor) {
    return cursor.at(L"/>") || cursor.at(L">");
}

bool isBlankText(const XmlNode& node) {
    return node.nodeType() == XmlNodeType::Text && static_cast<const XmlText&>(node).isBlank();
}

bool endsLine(const std::wstring& text) {
    return text.size() >= kXmlLineEnd.size() &&
           text.compare(text.size() - kXmlLineEnd.size(), kXmlLineEnd.size(), kXmlLineEnd) == 0;
}

std::uint8_t deeper(std::uint8_t level, std::size_t levels) {
    return static_cast<std::uint8_t>(level + levels);
}

}  // namespace

XmlElement::XmlElement() = default;

XmlElement::XmlElement(std::wstring name) : ownName(std::move(name)) {}

XmlElement::~XmlElement() = default;

// What lies between the other children: blank texts, which are no children, belong to it.
std::wstring XmlElement::innerText() const {
    std::wstring text;
    std::wstring_view rest = inner;
    for (const XmlNode* child : children()) {
        if (child->parent() == this && child->nodeType() != XmlNodeType::Text) {
            const std::wstring_view other = child->outerXml();
            const auto before = static_cast<std::size_t>(other.data() - rest.data());
            text += rest.substr(0, before);
            rest.remove_prefix(before + other.size());
        }
    }
    return text.append(rest);
}

const XmlAttribute* XmlElement::getAttribute(std::wstring_view name) const {
    const auto found = findAttribute(ownAttributes, name);
    return found == ownAttributes.end() ? nullptr : &*found;
}

void XmlElement::setAttribute(std::wstring name, std::wstring value) {
    const auto found = findAttribute(ownAttributes, name);
    if (found != ownAttributes.end()) {
        found->setValue(std::move(value));
    } else {
        ownAttributes.emplace_back(std::move(name), std::move(value));
    }
}

XmlResult XmlElement::parse(XmlCursor& cursor) {
    XmlElement* open = this;
    XmlResult result = parseStartTag(cursor, open);
    while (result == XmlResult::Success && open != nullptr) {
        result = open->parseContent(cursor, open);
    }
    return result;
}

XmlResult XmlElement::parseStartTag(XmlCursor& cursor, XmlElement*& open) {
    source = cursor.since(cursor.position());
    if (!cursor.consume(L"<")) {
        return XmlResult::OpeningTokenMissing;
    }
    const XmlResult result = parseName(cursor);
    if (result != XmlResult::Success) {
        return result;
    }
    if (cursor.atBlank()) {
        cursor.advance();
        parseAttributes(cursor);
    }
    if (cursor.consume(L">")) {
        inner = cursor.since(cursor.position());
    } else {
        cursor.consume(L"/>");
        finish(cursor, open);
    }
    return XmlResult::Success;
}

XmlResult XmlElement::parseName(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    while (!cursor.atEnd() && !cursor.atBlank() && !atTagEnd(cursor)) {
        const wchar_t character = cursor.current();
        const bool isFirst = cursor.position() == start;
        if (!(isFirst ? isNameStart(character) : isNameCharacter(character))) {
            return XmlResult::InvalidName;
        }
        cursor.advance();
    }
    ownName = XmlString::partOf(cursor.since(start));
    return XmlResult::Success;
}

// Counted first, so that no room is left over: the file may hold little else.
void XmlElement::parseAttributes(XmlCursor& cursor) {
    ownAttributes.reserve(attributeCount(cursor));
    forEachAttribute(cursor, [this](XmlCursor& at) { ownAttributes.emplace_back().parse(at); });
}

XmlResult XmlElement::parseContent(XmlCursor& cursor, XmlElement*& open) {
    if (!cursor.atEnd() && !cursor.at(L"</")) {
        return parseChild(cursor, open);
    }
    cursor.extend(inner);
    const XmlResult result = parseClosingTag(cursor);
    finish(cursor, open);
    return result;
}

XmlResult XmlElement::parseChild(XmlCursor& cursor, XmlElement*& open) {
    std::unique_ptr<XmlNode> child;
    XmlResult result = makeXmlNode(cursor, child);
    if (result != XmlResult::Success) {
        return result;
    }
    if (child->nodeType() == XmlNodeType::Element) {
        open = static_cast<XmlElement*>(child.get());
        addParsedChild(std::move(child));
        return open->parseStartTag(cursor, open);
    }
    result = child->parse(cursor);
    if (result == XmlResult::Success && !isBlankText(*child)) {
        addParsedChild(std::move(child));
    }
    return result;
}

XmlResult XmlElement::parseClosingTag(XmlCursor& cursor) {
    cursor.consume(L"</");
    const std::size_t start = cursor.position();
    while (!cursor.atEnd() && !atTagEnd(cursor)) {
        cursor.advance();
    }
    const std::wstring_view closingName = cursor.since(start);
    if (cursor.consume(L">") && !sameName(closingName, name())) {
        return XmlResult::ClosingNameDiffers;
    }
    cursor.consume(L"/>");
    return XmlResult::Success;
}

// The parent of the element that the parse began with isn't set yet.
void XmlElement::finish(const XmlCursor& cursor, XmlElement*& open) {
    cursor.extend(source);
    open = static_cast<XmlElement*>(parsedParent());
}

void XmlElement::print(std::wstring& out, std::uint8_t level) const {
    std::vector<const XmlElement*> open;
    const XmlNode* node = this;
    while (node != nullptr) {
        const XmlElement* element = node->asElement();
        if (element != nullptr && element->firstChild() != nullptr) {
            element->printStartTag(out, deeper(level, open.size()));
            open.push_back(element);
            node = element->firstChild();
            continue;
        }
        if (element != nullptr) {
            element->printStartTag(out, deeper(level, open.size()));
        } else {
            node->print(out, deeper(level, open.size()));
        }
        while (!open.empty() && node->nextSibling() == nullptr) {
            node = open.back();
            open.pop_back();
            static_cast<const XmlElement*>(node)->printClosingTag(out, deeper(level, open.size()));
        }
        node = open.empty() ? nullptr : node->nextSibling();
    }
}

void XmlElement::printStartTag(std::wstring& out, std::uint8_t level) const {
    appendIndentation(out, level);
    out.append(L"<").append(name());
    for (const XmlAttribute& attribute : ownAttributes) {
        out.append(L" ");
        attribute.print(out);
    }
    if (children().empty()) {
        out.append(L"/>").append(kXmlLineEnd);
        return;
    }
    out.append(L">");
    if (firstChild()->nodeType() != XmlNodeType::Text) {
        out.append(kXmlLineEnd);
    }
}

void XmlElement::printClosingTag(std::wstring& out, std::uint8_t level) const {
    if (endsLine(out)) {
        appendIndentation(out, level);
    }
    out.append(L"</").append(name()).append(L">").append(kXmlLineEnd);
}

}  // namespace tavocal
