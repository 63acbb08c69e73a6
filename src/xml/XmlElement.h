#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlNode.h"

namespace tavocal {

class XmlAttribute;

class XmlElement : public XmlNode {
  public:
    using Attributes = std::vector<std::unique_ptr<XmlAttribute>>;

    XmlElement();
    // The name isn't validated.
    explicit XmlElement(std::wstring name);
    ~XmlElement() override;

    const XmlElement* asElement() const override { return this; }

    // In the order of their first setting. Each blank in a parsed start tag begins one, so that
    // two blanks in a row, or one in front of the tag's end, give an attribute without a name.
    const Attributes& attributes() const { return ownAttributes; }
    // The first attribute of that name, ignoring case, or null.
    const XmlAttribute* getAttribute(std::wstring_view name) const;
    // Replaces the value of the attribute that getAttribute finds, whose name stays, or appends
    // a new one.
    void setAttribute(std::wstring name, std::wstring value);

    // An element that the text cuts off is what could be read of it, with Success.
    [[nodiscard]] XmlResult parse(XmlCursor& cursor) override;
    void print(std::wstring& out, std::uint8_t level) const override;

  private:
    enum class State { Start, Name, Attributes, Content, Closing, Finished };

    XmlResult parseStates(XmlCursor& cursor);
    // Each reads one state and sets the next one, or comes to the end of the text.
    XmlResult parseStart(XmlCursor& cursor, State& state);
    XmlResult parseName(XmlCursor& cursor, State& state);
    XmlResult parseAttributes(XmlCursor& cursor, State& state);
    XmlResult parseContent(XmlCursor& cursor, State& state);
    XmlResult parseClosing(XmlCursor& cursor, State& state);
    XmlResult parseAttribute(XmlCursor& cursor);
    XmlResult parseChild(XmlCursor& cursor);

    Attributes ownAttributes;
};

}  // namespace tavocal
