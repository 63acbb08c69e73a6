#include "xml/XmlText.h"

#include "xml/XmlCursor.h"

namespace tavocal {

XmlText::XmlText() : XmlNode(XmlNodeType::Text) {}

XmlText::XmlText(std::wstring_view text) : XmlText() {
    setContent(text);
}

XmlResult XmlText::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    while (!cursor.atEnd() && !cursor.at(L"<") && !cursor.at(L"/>")) {
        blank = blank && cursor.atBlank();
        cursor.advance();
    }
    texts.outerXml = cursor.since(start);
    setContent(texts.outerXml);
    return XmlResult::Success;
}

void XmlText::print(std::wstring& out, std::uint8_t /*level*/) const {
    out += value();
}

}  // namespace tavocal
