#pragma once

#include "xml/XmlNode.h"

namespace tavocal {

// "<!--" text "-->". A comment without its end takes the rest of the document.
class XmlComment : public XmlNode {
  public:
    XmlComment();
    explicit XmlComment(std::wstring_view text);

    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;
};

}  // namespace tavocal
