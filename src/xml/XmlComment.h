#pragma once

#include "xml/XmlNode.h"
#include "xml/XmlString.h"

namespace tavocal {

// "<!--" text "-->". A comment without its end takes the rest of the document.
class XmlComment : public XmlNode {
  public:
    XmlComment() = default;
    explicit XmlComment(std::wstring_view text);

    XmlNodeType nodeType() const override { return XmlNodeType::Comment; }
    std::wstring_view value() const override { return content.view(); }

    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    XmlString content;
};

}  // namespace tavocal
