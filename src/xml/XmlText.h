#pragma once

#include "xml/XmlNode.h"

namespace tavocal {

// Text between tags. References stay as they are written, in both directions.
class XmlText : public XmlNode {
  public:
    XmlText();
    explicit XmlText(std::wstring_view text);

    // No character other than white space was parsed. Stays true for a text built by hand.
    bool isBlank() const { return blank; }

    // Reads up to the next "<" or "/>", or the end.
    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    bool blank = true;
};

}  // namespace tavocal
