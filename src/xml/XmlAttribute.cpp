#include "xml/XmlAttribute.h"

#include <cwctype>
#include <utility>

#include "xml/XmlCursor.h"
#include "xml/XmlReferences.h"

namespace tavocal {

namespace {

enum class Destination { Nowhere, Name, Value };

// How far an attribute has been read.
struct Progress {
    bool inName = true;
    wchar_t openQuote = L'\0';
};

// Where the next character goes.
Destination take(wchar_t character, Progress& progress) {
    if (character == L'=') {
        // Also inside quotes.
        progress.inName = false;
        return Destination::Nowhere;
    }
    const bool isQuote = character == L'"' || character == L'\'';
    if (isQuote && (progress.openQuote == L'\0' || progress.openQuote == character)) {
        progress.openQuote = progress.openQuote == L'\0' ? character : L'\0';
        return Destination::Nowhere;
    }
    const bool isBlank = std::iswspace(static_cast<std::wint_t>(character)) != 0;
    return progress.inName && !isQuote && !isBlank ? Destination::Name : Destination::Value;
}

}  // namespace

XmlAttribute::XmlAttribute(std::wstring name, std::wstring value)
    : own(std::make_unique<Texts>(Texts{std::move(name), std::move(value)})) {}

void XmlAttribute::setValue(std::wstring value) {
    own = std::make_unique<Texts>(Texts{name(), std::move(value)});
}

void XmlAttribute::skip(XmlCursor& cursor) {
    Progress progress;
    while (!cursor.atEnd() && !cursor.at(L">") && !cursor.at(L"/>") &&
           (progress.openQuote != L'\0' || !cursor.atBlank())) {
        take(cursor.current(), progress);
        cursor.advance();
    }
}

void XmlAttribute::parse(XmlCursor& cursor) {
    const std::size_t start = cursor.position();
    skip(cursor);
    source = cursor.since(start);
    // A reference that can't be decoded is told now.
    static_cast<void>(texts());
}

XmlAttribute::Texts XmlAttribute::texts() const {
    if (own) {
        return *own;
    }
    Texts read;
    Progress progress;
    for (const wchar_t character : source) {
        const Destination destination = take(character, progress);
        if (destination != Destination::Nowhere) {
            (destination == Destination::Name ? read.name : read.value).push_back(character);
        }
    }
    read.value = decodeReferences(read.value);
    return read;
}

void XmlAttribute::print(std::wstring& out) const {
    const Texts printed = texts();
    out.append(printed.name).append(L"=\"").append(printed.value).append(L"\"");
}

}  // namespace tavocal
