#pragma once

#include <cstddef>
#include <string_view>

namespace tavocal {

// Where a parse stands in its text, which must outlive the cursor and every view taken from it.
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
    // The blanks that are next, and moves behind them.
    std::wstring_view takeBlanks();

    std::size_t position() const { return place; }
    // The text from `start`, an earlier position, up to here.
    std::wstring_view since(std::size_t start) const { return text.substr(start, place - start); }
    // Lets `view`, which begins at an earlier place of the text, end here.
    void extend(std::wstring_view& view) const;

  private:
    std::wstring_view text;
    std::size_t place = 0;
};

}  // namespace tavocal
