#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tavocal {

class XmlCursor;

// One attribute of an element. Of a parsed one, which can be a single blank of the file, there is
// only the place in the document's text: its name and its value are read from there each time.
class XmlAttribute {
  public:
    XmlAttribute() = default;
    XmlAttribute(std::wstring name, std::wstring value);

    std::wstring name() const { return texts().name; }
    // With the references decoded; printing doesn't put them back.
    std::wstring value() const { return texts().value; }
    // The source text of a parsed attribute, as XmlNode's.
    std::wstring_view outerXml() const { return source; }

    void setValue(std::wstring value);

    // Steps over an attribute: up to a blank outside quotes, ">", "/>" or the end, which stay at
    // the cursor. What lies there may be empty.
    static void skip(XmlCursor& cursor);
    // Reads the same. Throws what decodeReferences throws.
    void parse(XmlCursor& cursor);
    // Appends the attribute's text to `out`.
    void print(std::wstring& out) const;

  private:
    struct Texts {
        std::wstring name;
        std::wstring value;
    };
    Texts texts() const;

    std::wstring_view source;
    std::unique_ptr<Texts> own;  // null for a parsed attribute
};

}  // namespace tavocal
