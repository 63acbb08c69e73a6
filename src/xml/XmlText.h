#pragma once

#include "xml/XmlNode.h"
#include "xml/XmlString.h"

namespace tavocal {

// Text between tags. References stay as they are written, in both directions.
class XmlText : public XmlNode {
  public:
    XmlText() = default;
    explicit XmlText(std::wstring_view text);

    XmlNodeType nodeType() const override { return XmlNodeType::Text; }
    std::wstring_view value() const override { return content.view(); }
    // No character other than white space was parsed. True for a text built by hand.
    bool isBlank() const;

    // Reads up to the next "<" or "/>", or the end.
    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    XmlString content;
};

}  // namespace tavocal
