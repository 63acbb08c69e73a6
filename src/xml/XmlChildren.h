#pragma once

namespace tavocal {

class XmlNode;

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

}  // namespace tavocal
