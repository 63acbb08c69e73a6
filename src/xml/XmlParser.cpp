#include "xml/XmlParser.h"

#include "xml/XmlComment.h"
#include "xml/XmlCursor.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {

XmlResult makeXmlNode(const XmlCursor& cursor, std::unique_ptr<XmlNode>& node) {
    if (cursor.at(L"<?")) {
        node = std::make_unique<XmlDeclaration>();
    } else if (cursor.at(L"<!--")) {
        node = std::make_unique<XmlComment>();
    } else if (cursor.at(L"<!")) {
        return XmlResult::UnsupportedSyntax;
    } else if (cursor.at(L"<")) {
        node = std::make_unique<XmlElement>();
    } else if (cursor.at(L"/>")) {
        // A text ends in front of it, so nothing could take it.
        return XmlResult::StrayTagEnd;
    } else {
        node = std::make_unique<XmlText>();
    }
    return XmlResult::Success;
}

}  // namespace tavocal
