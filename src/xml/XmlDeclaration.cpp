#include "xml/XmlDeclaration.h"

#include "xml/XmlCursor.h"

namespace tavocal {

namespace {

constexpr std::wstring_view kOpening = L"<?";
constexpr std::wstring_view kClosing = L"?>";

}  // namespace

XmlDeclaration::XmlDeclaration() : XmlNode(XmlNodeType::Declaration) {}

XmlDeclaration::XmlDeclaration(std::wstring name, std::wstring_view attributeText)
    : XmlDeclaration() {
    texts.name = std::move(name);
    setContent(attributeText);
}

XmlResult XmlDeclaration::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    if (!cursor.consume(kOpening)) {
        return XmlResult::OpeningTokenMissing;
    }
    texts.name = cursor.takeUntilBlank();
    if (cursor.atBlank()) {
        cursor.advance();
    }
    setContent(cursor.takeUntil(kClosing));
    cursor.consume(kClosing);
    texts.outerXml = cursor.since(start);
    return XmlResult::Success;
}

void XmlDeclaration::print(std::wstring& out, std::uint8_t level) const {
    appendIndentation(out, level);
    out.append(kOpening).append(name()).append(L" ").append(innerText());
    out.append(kClosing).append(kXmlLineEnd);
}

}  // namespace tavocal
