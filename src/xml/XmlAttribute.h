#pragma once

#include "xml/XmlNode.h"

namespace tavocal {

// One attribute of an element. The value of a parsed one has its references decoded; printing
// doesn't put them back.
class XmlAttribute : public XmlNode {
  public:
    XmlAttribute();
    XmlAttribute(std::wstring name, std::wstring value);

    void setValue(std::wstring value) { texts.value = std::move(value); }

    // Reads up to a blank outside quotes, ">", "/>" or the end, which stay at the cursor. What is
    // read may be empty. Always succeeds, or throws what decodeReferences throws.
    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    struct Progress;
    void take(const XmlCursor& cursor, Progress& progress);
};

}  // namespace tavocal
