#pragma once

#include <string>
#include <string_view>

#include "xml/XmlNode.h"

namespace tavocal {

// A whole XML file. It owns the text, which the views of its nodes point into, and the tree.
// It knows no namespaces, document types or CDATA; references are decoded in attribute values
// only. A document may be of any size and depth: it costs at most 64 times its bytes. It document
// can be loaded again, which drops the text and the tree that it had.
class XmlDocument : public XmlNode {
  public:
    // The children go before the text that they point into.
    ~XmlDocument() override;

    XmlNodeType nodeType() const override { return XmlNodeType::Document; }
    std::wstring innerText() const override;
    // Without the blanks between the children.
    std::wstring innerXml() const override;

    // Reads a UTF-8 file. CR LF counts as LF, a byte order mark is skipped, and the text ends at
    // the first NUL. On a failure what was read before it stays in the tree. An empty path leaves
    // the document as it was. Throws what decodeReferences throws.
    [[nodiscard]] XmlResult load(const std::string& path);
    // The same for the bytes of a file.
    [[nodiscard]] XmlResult loadBytes(std::string_view bytes);

    // Writes the text of all children as UTF-8 without a byte order mark.
    [[nodiscard]] XmlResult save(const std::string& path) const;

  private:
    void clear();
    XmlResult parseBuffer();
    XmlResult parseChild(XmlCursor& cursor);

    std::wstring buffer;
};

}  // namespace tavocal
