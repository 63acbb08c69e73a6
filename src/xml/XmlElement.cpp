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
    return std::find_if(attributes.begin(), attributes.end(), [name](const auto& attribute) {
        return sameName(attribute->name(), name);
    });
}

bool endsLine(const std::wstring& text) {
    return text.size() >= kXmlLineEnd.size() &&
           text.compare(text.size() - kXmlLineEnd.size(), kXmlLineEnd.size(), kXmlLineEnd) == 0;
}

}  // namespace

XmlElement::XmlElement() : XmlNode(XmlNodeType::Element) {}

XmlElement::XmlElement(std::wstring name) : XmlElement() {
    texts.name = std::move(name);
}

XmlElement::~XmlElement() = default;

const XmlAttribute* XmlElement::getAttribute(std::wstring_view name) const {
    const auto found = findAttribute(ownAttributes, name);
    return found == ownAttributes.end() ? nullptr : found->get();
}

void XmlElement::setAttribute(std::wstring name, std::wstring value) {
    const auto found = findAttribute(ownAttributes, name);
    if (found != ownAttributes.end()) {
        (*found)->setValue(std::move(value));
    } else {
        ownAttributes.push_back(std::make_unique<XmlAttribute>(std::move(name), std::move(value)));
    }
}

XmlResult XmlElement::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    if (!cursor.enterElement()) {
        return XmlResult::TooDeep;
    }
    const XmlResult result = parseStates(cursor);
    cursor.leaveElement();
    texts.outerXml = cursor.since(start);
    return result;
}

XmlResult XmlElement::parseStates(XmlCursor& cursor) {
    XmlResult result = XmlResult::Success;
    State state = State::Start;
    while (result == XmlResult::Success && state != State::Finished && !cursor.atEnd()) {
        switch (state) {
            case State::Start:
                result = parseStart(cursor, state);
                break;
            case State::Name:
                result = parseName(cursor, state);
                break;
            case State::Attributes:
                result = parseAttributes(cursor, state);
                break;
            case State::Content:
                result = parseContent(cursor, state);
                break;
            case State::Closing:
                result = parseClosing(cursor, state);
                break;
            case State::Finished:
                break;
        }
    }
    return result;
}

XmlResult XmlElement::parseStart(XmlCursor& cursor, State& state) {
    state = State::Name;
    return cursor.consume(L"<") ? XmlResult::Success : XmlResult::OpeningTokenMissing;
}

XmlResult XmlElement::parseName(XmlCursor& cursor, State& state) {
    for (; !cursor.atEnd(); cursor.advance()) {
        if (cursor.atBlank()) {
            cursor.advance();
            state = State::Attributes;
            return XmlResult::Success;
        }
        if (cursor.consume(L"/>")) {
            state = State::Finished;
            return XmlResult::Success;
        }
        if (cursor.consume(L">")) {
            state = State::Content;
            return XmlResult::Success;
        }
        const wchar_t character = cursor.current();
        if (!(name().empty() ? isNameStart(character) : isNameCharacter(character))) {
            return XmlResult::InvalidName;
        }
        texts.name.push_back(character);
    }
    return XmlResult::Success;
}

XmlResult XmlElement::parseAttributes(XmlCursor& cursor, State& state) {
    while (!cursor.atEnd()) {
        const XmlResult result = parseAttribute(cursor);
        if (result != XmlResult::Success) {
            return result;
        }
        if (cursor.at(L"/>")) {
            state = State::Closing;
            return XmlResult::Success;
        }
        if (cursor.consume(L">")) {
            state = State::Content;
            return XmlResult::Success;
        }
        if (cursor.atBlank()) {
            cursor.advance();
        }
    }
    return XmlResult::Success;
}

XmlResult XmlElement::parseAttribute(XmlCursor& cursor) {
    if (ownAttributes.size() == kMaxXmlAttributes) {
        return XmlResult::TooManyAttributes;
    }
    if (!cursor.takeNode()) {
        return XmlResult::TooLarge;
    }
    ownAttributes.push_back(std::make_unique<XmlAttribute>());
    return ownAttributes.back()->parse(cursor);
}

XmlResult XmlElement::parseContent(XmlCursor& cursor, State& state) {
    const std::size_t start = cursor.position();
    XmlResult result = XmlResult::Success;
    while (result == XmlResult::Success && !cursor.atEnd() && !cursor.at(L"</")) {
        result = parseChild(cursor);
    }
    texts.innerXml = cursor.since(start);
    if (result == XmlResult::Success && cursor.consume(L"</")) {
        state = State::Closing;
    }
    return result;
}

XmlResult XmlElement::parseChild(XmlCursor& cursor) {
    std::unique_ptr<XmlNode> child;
    const XmlResult result = parseXmlNode(cursor, child);
    if (result != XmlResult::Success) {
        return result;
    }
    if (child->nodeType() == XmlNodeType::Text) {
        texts.innerText += child->value();
        if (static_cast<const XmlText&>(*child).isBlank()) {
            return XmlResult::Success;
        }
    }
    addParsedChild(std::move(child));
    return XmlResult::Success;
}

XmlResult XmlElement::parseClosing(XmlCursor& cursor, State& state) {
    const std::size_t start = cursor.position();
    while (!cursor.atEnd() && !cursor.at(L"/>") && !cursor.at(L">")) {
        cursor.advance();
    }
    const std::wstring_view closingName = cursor.since(start);
    if (cursor.consume(L"/>")) {
        state = State::Finished;
    } else if (cursor.consume(L">")) {
        state = State::Finished;
        return sameName(closingName, name()) ? XmlResult::Success : XmlResult::ClosingNameDiffers;
    }
    return XmlResult::Success;
}

void XmlElement::print(std::wstring& out, std::uint8_t level) const {
    appendIndentation(out, level);
    out.append(L"<").append(name());
    for (const auto& attribute : ownAttributes) {
        out.append(L" ");
        attribute->print(out, level);
    }
    if (children().empty()) {
        out.append(L"/>").append(kXmlLineEnd);
        return;
    }
    out.append(L">");
    if (firstChild()->nodeType() != XmlNodeType::Text) {
        out.append(kXmlLineEnd);
    }
    for (const auto& child : children()) {
        child->print(out, static_cast<std::uint8_t>(level + 1));
    }
    if (endsLine(out)) {
        appendIndentation(out, level);
    }
    out.append(L"</").append(name()).append(L">").append(kXmlLineEnd);
}

}  // namespace tavocal
