#pragma once

#include "xml/XmlNode.h"
#include "xml/XmlString.h"

namespace tavocal {

// "<?" name, a blank, attribute text "?>". The attribute text stays one string. A declaration
// without its end, or without a blank behind its name, takes the rest of the document.
class XmlDeclaration : public XmlNode {
  public:
    XmlDeclaration() = default;
    XmlDeclaration(std::wstring name, std::wstring_view text);

    XmlNodeType nodeType() const override { return XmlNodeType::Declaration; }
    std::wstring_view name() const override { return ownName.view(); }
    std::wstring_view value() const override { return attributeText.view(); }

    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    XmlString ownName;
    XmlString attributeText;
};

}  // namespace tavocal
