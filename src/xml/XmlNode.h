#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/XmlResult.h"

namespace tavocal {

class XmlCursor;
class XmlElement;

enum class XmlNodeType : std::int32_t {
    Element = 1,
    Attribute = 2,
    Comment = 3,
    Text = 4,
    Declaration = 5,
    Document = 6,
};

// Base of the XML tree. A node owns its children. Names are compared ignoring case.
//
// Which texts a node has depends on its class; the others are empty:
//   name       elements, attributes, declarations
//   value      texts, comments, attributes, and the attribute text of declarations
//   innerText  the same as `value` for texts, comments and declarations; for a parsed element the
//              values of its own text children, for a parsed document the texts of its children
//   outerXml, innerXml  the source text of a parsed node and of its children. outerXml is a view
//              into the document's text and holds until that is loaded again or destroyed.
class XmlNode {
  public:
    using Children = std::vector<std::unique_ptr<XmlNode>>;

    virtual ~XmlNode();
    XmlNode(const XmlNode&) = delete;
    XmlNode& operator=(const XmlNode&) = delete;

    XmlNodeType nodeType() const { return type; }
    const std::wstring& name() const { return texts.name; }
    const std::wstring& value() const { return texts.value; }
    const std::wstring& innerText() const { return texts.innerText; }
    virtual std::wstring innerXml() const;
    std::wstring_view outerXml() const { return texts.outerXml; }

    // Set by the parser alone: null in a tree that was built by hand, and for the attributes.
    const XmlNode* parent() const { return parentNode; }
    // In document order.
    const Children& children() const { return childNodes; }
    // Null if there is no child.
    const XmlNode* firstChild() const;
    const XmlNode* lastChild() const;
    // The first direct child of that name, or null.
    const XmlNode* findChild(std::wstring_view name) const;
    // This node if it is an element, else null.
    virtual const XmlElement* asElement() const { return nullptr; }

    // Appends `child`, which must not be null, and answers it in its own class:
    //     XmlElement& step = steps.addChild(std::make_unique<XmlElement>(L"Step"));
    // The reference holds as long as this node does.
    template <typename Node>
    Node& addChild(std::unique_ptr<Node> child) {
        Node& added = *child;
        childNodes.push_back(std::move(child));
        return added;
    }
    void clearChildren();

    // Reads this node, a new one, from the cursor's place and moves the cursor behind it. Throws
    // what decodeReferences throws.
    [[nodiscard]] virtual XmlResult parse(XmlCursor& cursor);

    // The node's text with four blanks for each level and CR LF line ends. Nothing is escaped.
    std::wstring toString(std::uint8_t level) const;
    // Appends the same to `out`.
    virtual void print(std::wstring& out, std::uint8_t level) const;

  protected:
    struct Texts {
        std::wstring name;
        std::wstring value;
        std::wstring innerText;
        std::wstring_view innerXml;
        std::wstring_view outerXml;
    };

    explicit XmlNode(XmlNodeType nodeType);

    // Sets the value, and the innerText, which is the same.
    void setContent(std::wstring_view content);
    // addChild for a node that was parsed in this one.
    void addParsedChild(std::unique_ptr<XmlNode> child);

    Texts texts;

  private:
    XmlNodeType type;
    const XmlNode* parentNode = nullptr;
    Children childNodes;
};

// Appends the blanks in front of a line of that level.
void appendIndentation(std::wstring& out, std::uint8_t level);

constexpr std::wstring_view kXmlLineEnd = L"\r\n";

}  // namespace tavocal
