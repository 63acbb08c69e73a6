#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlNode.h"
#include "xml/XmlString.h"

namespace tavocal {

class XmlAttribute;

class XmlElement : public XmlNode {
  public:
    using Attributes = std::vector<XmlAttribute>;

    XmlElement();
    // The name isn't validated.
    explicit XmlElement(std::wstring name);
    ~XmlElement() override;

    XmlNodeType nodeType() const override { return XmlNodeType::Element; }
    std::wstring_view name() const override { return ownName.view(); }
    std::wstring innerText() const override;
    std::wstring innerXml() const override { return std::wstring(inner); }
    const XmlElement* asElement() const override { return this; }

    // In the order of their first setting. Each blank in a parsed start tag begins one, so that
    // two blanks in a row, or one in front of the tag's end, give an attribute without a name.
    const Attributes& attributes() const { return ownAttributes; }
    // The first attribute of that name, ignoring case, or null. Holds until the next setAttribute.
    const XmlAttribute* getAttribute(std::wstring_view name) const;
    // Replaces the value of the attribute that getAttribute finds, whose name stays, or appends
    // a new one.
    void setAttribute(std::wstring name, std::wstring value);

    // An element that the text cuts off is what could be read of it, with Success.
    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    // Each reads a piece of this element. `open` is the innermost element whose content goes on
    // behind it: this one, a child, or the parent once this one has come to its end.
    XmlResult parseStartTag(XmlCursor& cursor, XmlElement*& open);
    XmlResult parseContent(XmlCursor& cursor, XmlElement*& open);
    XmlResult parseChild(XmlCursor& cursor, XmlElement*& open);
    XmlResult parseName(XmlCursor& cursor);
    void parseAttributes(XmlCursor& cursor);
    XmlResult parseClosingTag(XmlCursor& cursor);
    void finish(const XmlCursor& cursor, XmlElement*& open);

    void printStartTag(std::wstring& out, std::uint8_t level) const;
    void printClosingTag(std::wstring& out, std::uint8_t level) const;

    XmlString ownName;
    std::wstring_view inner;
    Attributes ownAttributes;
};

}  // namespace tavocal
