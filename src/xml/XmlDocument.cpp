#include "xml/XmlDocument.h"

#include <algorithm>
#include <optional>

#include "base/Text.h"
#include "base/Utf8.h"
#include "platform/Files.h"
#include "xml/XmlCursor.h"
#include "xml/XmlParser.h"

namespace tavocal {

namespace {

void endAtNul(std::wstring& text) {
    text.resize(std::min(text.find(L'\0'), text.size()));
}

void unifyLineEnds(std::wstring& text) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'\r' || i + 1 == text.size() || text[i + 1] != L'\n') {
            text[kept++] = text[i];
        }
    }
    text.resize(kept);
}

}  // namespace

XmlDocument::~XmlDocument() {
    clearChildren();
}

std::wstring XmlDocument::innerXml() const {
    std::wstring text;
    for (const XmlNode* child : children()) {
        text += child->outerXml();
    }
    return text;
}

std::wstring XmlDocument::innerText() const {
    std::wstring text;
    for (const XmlNode* child : children()) {
        text += child->innerText();
    }
    return text;
}

XmlResult XmlDocument::load(const std::string& path) {
    if (path.empty()) {
        return XmlResult::EmptyPath;
    }
    clear();
    std::string bytes;
    return platform::readFile(path, bytes) ? loadBytes(bytes) : XmlResult::Unreadable;
}

XmlResult XmlDocument::loadBytes(std::string_view bytes) {
    clear();
    std::optional<std::wstring> text = wideFromUtf8(bytes);
    if (!text) {
        return XmlResult::Unreadable;
    }
    buffer = std::move(*text);
    endAtNul(buffer);
    unifyLineEnds(buffer);
    source = buffer;
    return parseBuffer();
}

void XmlDocument::clear() {
    clearChildren();
    source = {};
    buffer = std::wstring();
}

XmlResult XmlDocument::parseBuffer() {
    XmlCursor cursor(buffer);
    cursor.consume(L"\uFEFF");
    XmlResult result = XmlResult::Success;
    while (result == XmlResult::Success && !cursor.atEnd()) {
        if (cursor.atBlank()) {
            cursor.advance();
        } else {
            result = parseChild(cursor);
        }
    }
    return result;
}

XmlResult XmlDocument::parseChild(XmlCursor& cursor) {
    std::unique_ptr<XmlNode> child;
    XmlResult result = makeXmlNode(cursor, child);
    if (result == XmlResult::Success) {
        result = child->parse(cursor);
    }
    if (result == XmlResult::Success) {
        addParsedChild(std::move(child));
    }
    return result;
}

XmlResult XmlDocument::save(const std::string& path) const {
    std::wstring text;
    for (const XmlNode* child : children()) {
        child->print(text, 0);
    }
    const std::string failure = platform::writeFile(path, toUtf8(text));
    return failure.empty() ? XmlResult::Success : XmlResult::Unwritable;
}

}  // namespace tavocal
