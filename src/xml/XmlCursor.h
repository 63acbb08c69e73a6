#pragma once

#include <cstddef>
#include <string_view>

namespace tavocal {

// What one document may hold. Each is far beyond the largest file of the system and keeps a
// hostile one from exhausting the stack or the memory.
constexpr std::size_t kMaxXmlDepth = 255;
constexpr std::size_t kMaxXmlAttributes = 255;   // of one element
constexpr std::size_t kMaxXmlNodes = 1'000'000;  // of one document, attributes too

// Where a parse stands: the place in the text, the elements that are open and the nodes made so
// far. The text must outlive the cursor and every view taken from it.
class XmlCursor {
  public:
    explicit XmlCursor(std::wstring_view text);

    bool atEnd() const { return place == text.size(); }
    // REQUIRES: not atEnd().
    wchar_t current() const { return text[place]; }
    bool at(std::wstring_view token) const;
    // A white space character of the current locale is next.
    bool atBlank() const;

    // REQUIRES: not atEnd().
    void advance() { ++place; }
    // Steps over `token` if it is next; else false.
    bool consume(std::wstring_view token);

    // The text up to `token`, or to the end if there is none, and moves there.
    std::wstring_view takeUntil(std::wstring_view token);
    std::wstring_view takeUntilBlank();

    std::size_t position() const { return place; }
    // The text from `start`, an earlier position, up to here.
    std::wstring_view since(std::size_t start) const { return text.substr(start, place - start); }

    // Count an element that opens; false if it lies too deep. Each true needs a leaveElement.
    bool enterElement();
    void leaveElement() { --depth; }
    // Counts a node; false if the document may hold no more.
    bool takeNode();

  private:
    std::wstring_view text;
    std::size_t place = 0;
    std::size_t depth = 0;
    std::size_t nodes = 0;
};

}  // namespace tavocal
