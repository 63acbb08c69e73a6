#include "xml/XmlText.h"

#include "xml/XmlCursor.h"

namespace tavocal {

XmlText::XmlText(std::wstring_view text) : content(std::wstring(text)) {}

bool XmlText::isBlank() const {
    return XmlCursor(source).takeBlanks().size() == source.size();
}

XmlResult XmlText::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    while (!cursor.atEnd() && !cursor.at(L"<") && !cursor.at(L"/>")) {
        cursor.advance();
    }
    source = cursor.since(start);
    content = XmlString::partOf(source);
    return XmlResult::Success;
}

void XmlText::print(std::wstring& out, std::uint8_t /*level*/) const {
    out += value();
}

}  // namespace tavocal
