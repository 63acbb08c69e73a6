#include "xml/XmlCursor.h"

#include <algorithm>
#include <cwctype>

namespace tavocal {

XmlCursor::XmlCursor(std::wstring_view documentText) : text(documentText) {}

bool XmlCursor::at(std::wstring_view token) const {
    return text.substr(place, token.size()) == token;
}

bool XmlCursor::atBlank() const {
    return !atEnd() && std::iswspace(static_cast<std::wint_t>(current())) != 0;
}

bool XmlCursor::consume(std::wstring_view token) {
    if (!at(token)) {
        return false;
    }
    place += token.size();
    return true;
}

std::wstring_view XmlCursor::takeUntil(std::wstring_view token) {
    const std::size_t start = place;
    place = std::min(text.find(token, start), text.size());
    return since(start);
}

std::wstring_view XmlCursor::takeUntilBlank() {
    const std::size_t start = place;
    while (!atEnd() && !atBlank()) {
        advance();
    }
    return since(start);
}

std::wstring_view XmlCursor::takeBlanks() {
    const std::size_t start = place;
    while (atBlank()) {
        advance();
    }
    return since(start);
}

void XmlCursor::extend(std::wstring_view& view) const {
    view =
        std::wstring_view(view.data(), static_cast<std::size_t>(text.data() + place - view.data()));
}

}  // namespace tavocal
