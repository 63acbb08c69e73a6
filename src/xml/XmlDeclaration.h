#pragma once

#include "xml/XmlNode.h"

namespace tavocal {

// "<?" name, a blank, attribute text "?>". The attribute text stays one string. A declaration
// without its end, or without a blank behind its name, takes the rest of the document.
class XmlDeclaration : public XmlNode {
  public:
    XmlDeclaration();
    XmlDeclaration(std::wstring name, std::wstring_view attributeText);

    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;
};

}  // namespace tavocal
