#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "xml/XmlResult.h"

namespace tavocal {

class XmlCursor;
class XmlElement;
class XmlNode;

enum class XmlNodeType : std::int32_t {
    Element = 1,
    Attribute = 2,
    Comment = 3,
    Text = 4,
    Declaration = 5,
    Document = 6,
};

// The children of a node in document order, to walk over: each is a pointer that isn't null.
class XmlChildren {
  public:
    class Iterator {
      public:
        explicit Iterator(const XmlNode* first) : node(first) {}
        const XmlNode* operator*() const { return node; }
        Iterator& operator++();
        bool operator==(const Iterator& other) const { return node == other.node; }

      private:
        const XmlNode* node;
    };

    explicit XmlChildren(const XmlNode* firstChild) : first(firstChild) {}

    bool empty() const { return first == nullptr; }
    Iterator begin() const { return Iterator(first); }
    Iterator end() const { return Iterator(nullptr); }

  private:
    const XmlNode* first;
};

// Base of the XML tree. A node owns its children. Names are compared ignoring case.
//
// Which texts a node has depends on its class; the others are empty:
//   name       elements, declarations
//   value      texts, comments, and the attribute text of declarations
//   innerText  the same as `value` for texts, comments and declarations; for a parsed element the
//              values of its own text children, for a parsed document the texts of its children
//   outerXml, innerXml  the source text of a parsed node and of its children
// The views point into the node or, for a parsed one, into the document's text, and hold until that
// is loaded again or destroyed.
//
// A file of N characters can hold N / 3 nodes, one in the other: so a node is small, its texts are
// views, and nothing calls itself for each level.
class XmlNode {
  public:
    virtual ~XmlNode();
    XmlNode(const XmlNode&) = delete;
    XmlNode& operator=(const XmlNode&) = delete;

    virtual XmlNodeType nodeType() const = 0;
    virtual std::wstring_view name() const { return {}; }
    virtual std::wstring_view value() const { return {}; }
    virtual std::wstring innerText() const { return std::wstring(value()); }
    virtual std::wstring innerXml() const { return {}; }
    std::wstring_view outerXml() const { return source; }

    // Set by the parser alone: null in a tree that was built by hand.
    const XmlNode* parent() const { return parentNode; }
    // In document order.
    XmlChildren children() const { return XmlChildren(first.get()); }
    // Null if there is none.
    const XmlNode* firstChild() const { return first.get(); }
    const XmlNode* lastChild() const { return last; }
    const XmlNode* nextSibling() const { return next.get(); }
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
        append(std::move(child));
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
    XmlNode();

    // addChild for a node that is parsed in this one.
    void addParsedChild(std::unique_ptr<XmlNode> child);
    XmlNode* parsedParent() { return parentNode; }

    std::wstring_view source;

  private:
    void append(std::unique_ptr<XmlNode> child);

    XmlNode* parentNode = nullptr;
    std::unique_ptr<XmlNode> first;
    XmlNode* last = nullptr;
    std::unique_ptr<XmlNode> next;
};

// Appends the blanks in front of a line of that level.
void appendIndentation(std::wstring& out, std::uint8_t level);

constexpr std::wstring_view kXmlLineEnd = L"\r\n";

}  // namespace tavocal
