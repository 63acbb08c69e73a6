#include "xml/XmlReferences.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>

namespace tavocal {

namespace {

// A reference at the front of a text, and the one character that takes its place.
struct Reference {
    std::size_t length;
    wchar_t character;
};

using ReferenceParser = std::optional<Reference> (*)(std::wstring_view);

struct NamedReference {
    std::wstring_view text;
    wchar_t character;
};

constexpr std::array<NamedReference, 5> kNamedReferences = {
    {{L"&quot;", L'"'}, {L"&gt;", L'>'}, {L"&lt;", L'<'}, {L"&amp;", L'&'}, {L"&apos;", L'\''}}};

constexpr std::size_t kMaxDigits = 5;
constexpr unsigned kLow16Bits = 0xFFFF;
constexpr unsigned kNoDigit = 16;

unsigned digitValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') {
        return static_cast<unsigned>(c - L'0');
    }
    if (c >= L'A' && c <= L'F') {
        return static_cast<unsigned>(c - L'A') + 10;
    }
    if (c >= L'a' && c <= L'f') {
        return static_cast<unsigned>(c - L'a') + 10;
    }
    return kNoDigit;
}

// At most five digits, so that the number can't run out of range.
unsigned numberOf(std::wstring_view digits, unsigned base) {
    if (digitValue(digits.front()) >= base) {
        throw std::invalid_argument("invalid stoi argument");
    }
    unsigned number = 0;
    for (const wchar_t digit : digits) {
        if (digitValue(digit) >= base) {
            break;
        }
        number = base * number + digitValue(digit);
    }
    return number;
}

std::size_t digitCount(std::wstring_view text) {
    std::size_t count = 0;
    while (count < text.size() && count < kMaxDigits && digitValue(text[count]) != kNoDigit) {
        ++count;
    }
    return count;
}

std::optional<Reference> numericReference(std::wstring_view text) {
    constexpr std::wstring_view kOpening = L"&#";
    if (text.substr(0, kOpening.size()) != kOpening) {
        return std::nullopt;
    }
    std::size_t first = kOpening.size();
    const bool hexadecimal = first < text.size() && (text[first] == L'x' || text[first] == L'X');
    first += hexadecimal ? 1 : 0;
    const std::size_t count = digitCount(text.substr(first));
    const std::size_t last = first + count;
    if (count == 0 || last == text.size() || text[last] != L';') {
        return std::nullopt;
    }
    const unsigned number = numberOf(text.substr(first, count), hexadecimal ? 16 : 10);
    return Reference{last + 1, static_cast<wchar_t>(number & kLow16Bits)};
}

std::optional<Reference> namedReference(std::wstring_view text) {
    for (const NamedReference& named : kNamedReferences) {
        if (text.substr(0, named.text.size()) == named.text) {
            return Reference{named.text.size(), named.character};
        }
    }
    return std::nullopt;
}

std::wstring replaceReferences(std::wstring_view text, ReferenceParser parse) {
    std::wstring result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find(L'&'), text.size());
        result.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) {
            const Reference reference = parse(text).value_or(Reference{1, L'&'});
            result.push_back(reference.character);
            text.remove_prefix(reference.length);
        }
    }
    return result;
}

}  // namespace

std::wstring decodeReferences(std::wstring_view text) {
    return replaceReferences(replaceReferences(text, numericReference), namedReference);
}

}  // namespace tavocal
