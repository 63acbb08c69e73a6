#include "xml/XmlAttribute.h"

#include "xml/XmlCursor.h"
#include "xml/XmlReferences.h"

namespace tavocal {

// How far an attribute has been read.
struct XmlAttribute::Progress {
    bool inName = true;
    wchar_t openQuote = L'\0';
};

XmlAttribute::XmlAttribute() : XmlNode(XmlNodeType::Attribute) {}

XmlAttribute::XmlAttribute(std::wstring name, std::wstring value) : XmlAttribute() {
    texts.name = std::move(name);
    texts.value = std::move(value);
}

XmlResult XmlAttribute::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    Progress progress;
    while (!cursor.atEnd() && !cursor.at(L">") && !cursor.at(L"/>") &&
           (progress.openQuote != L'\0' || !cursor.atBlank())) {
        take(cursor, progress);
        cursor.advance();
    }
    texts.outerXml = cursor.since(start);
    texts.value = decodeReferences(texts.value);
    return XmlResult::Success;
}

void XmlAttribute::take(const XmlCursor& cursor, Progress& progress) {
    const wchar_t character = cursor.current();
    const bool isQuote = character == L'"' || character == L'\'';
    if (character == L'=') {
        // Goes nowhere, also inside quotes.
        progress.inName = false;
    } else if (isQuote && progress.openQuote == L'\0') {
        progress.openQuote = character;
    } else if (isQuote && progress.openQuote == character) {
        progress.openQuote = L'\0';
    } else if (progress.inName && !isQuote && !cursor.atBlank()) {
        texts.name.push_back(character);
    } else {
        texts.value.push_back(character);
    }
}

void XmlAttribute::print(std::wstring& out, std::uint8_t /*level*/) const {
    out.append(name()).append(L"=\"").append(value()).append(L"\"");
}

}  // namespace tavocal
