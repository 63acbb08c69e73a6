#include "xml/XmlComment.h"

#include "xml/XmlCursor.h"

namespace tavocal {

namespace {

constexpr std::wstring_view kOpening = L"<!--";
constexpr std::wstring_view kClosing = L"-->";

}  // namespace

XmlComment::XmlComment(std::wstring_view text) : content(std::wstring(text)) {}

XmlResult XmlComment::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    if (!cursor.consume(kOpening)) {
        return XmlResult::OpeningTokenMissing;
    }
    content = XmlString::partOf(cursor.takeUntil(kClosing));
    cursor.consume(kClosing);
    source = cursor.since(start);
    return XmlResult::Success;
}

void XmlComment::print(std::wstring& out, std::uint8_t level) const {
    appendIndentation(out, level);
    out.append(kOpening).append(value()).append(kClosing).append(kXmlLineEnd);
}

}  // namespace tavocal
