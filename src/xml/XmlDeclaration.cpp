#include "xml/XmlDeclaration.h"

#include "xml/XmlCursor.h"

namespace tavocal {

namespace {

constexpr std::wstring_view kOpening = L"<?";
constexpr std::wstring_view kClosing = L"?>";

}  // namespace

XmlDeclaration::XmlDeclaration(std::wstring name, std::wstring_view text)
    : ownName(std::move(name)), attributeText(std::wstring(text)) {}

XmlResult XmlDeclaration::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    if (!cursor.consume(kOpening)) {
        return XmlResult::OpeningTokenMissing;
    }
    ownName = XmlString::partOf(cursor.takeUntilBlank());
    if (cursor.atBlank()) {
        cursor.advance();
    }
    attributeText = XmlString::partOf(cursor.takeUntil(kClosing));
    cursor.consume(kClosing);
    source = cursor.since(start);
    return XmlResult::Success;
}

void XmlDeclaration::print(std::wstring& out, std::uint8_t level) const {
    appendIndentation(out, level);
    out.append(kOpening).append(name()).append(L" ").append(value());
    out.append(kClosing).append(kXmlLineEnd);
}

}  // namespace tavocal
