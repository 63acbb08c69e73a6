#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tavocal {

namespace {

// One row of the Unicode Standard's table of well-formed byte sequences: the first byte, which
// tells the length, and the narrowed range of the second one. The others are 0x80 to 0xBF.
struct SequenceForm {
    std::uint8_t firstLow;
    std::uint8_t firstHigh;
    std::uint8_t length;
    std::uint8_t payload;  // the bits of the first byte that belong to the code
    std::uint8_t secondLow;
    std::uint8_t secondHigh;
};

constexpr std::array<SequenceForm, 8> kForms = {{{0xC2, 0xDF, 2, 0x1F, 0x80, 0xBF},
                                                 {0xE0, 0xE0, 3, 0x0F, 0xA0, 0xBF},
                                                 {0xE1, 0xEC, 3, 0x0F, 0x80, 0xBF},
                                                 {0xED, 0xED, 3, 0x0F, 0x80, 0x9F},
                                                 {0xEE, 0xEF, 3, 0x0F, 0x80, 0xBF},
                                                 {0xF0, 0xF0, 4, 0x07, 0x90, 0xBF},
                                                 {0xF1, 0xF3, 4, 0x07, 0x80, 0xBF},
                                                 {0xF4, 0xF4, 4, 0x07, 0x80, 0x8F}}};

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

// How many characters at the front take one byte each.
std::size_t asciiLength(std::string_view bytes) {
    const auto end = std::find_if(bytes.begin(), bytes.end(),
                                  [](char c) { return static_cast<std::uint8_t>(c) >= 0x80; });
    return static_cast<std::size_t>(end - bytes.begin());
}

const SequenceForm* formOf(std::uint8_t first) {
    const auto form = std::find_if(kForms.begin(), kForms.end(), [first](const SequenceForm& f) {
        return f.firstLow <= first && first <= f.firstHigh;
    });
    return form == kForms.end() ? nullptr : &*form;
}

bool wellFormed(std::string_view sequence, const SequenceForm& form) {
    if (sequence.size() < form.length || byteAt(sequence, 1) < form.secondLow ||
        byteAt(sequence, 1) > form.secondHigh) {
        return false;
    }
    const std::string_view rest = sequence.substr(2, form.length - std::size_t{2});
    return std::all_of(rest.begin(), rest.end(),
                       [](char c) { return (static_cast<std::uint8_t>(c) & 0xC0) == 0x80; });
}

std::uint32_t codeOf(std::string_view sequence, const SequenceForm& form) {
    std::uint32_t code = byteAt(sequence, 0) & form.payload;
    for (std::size_t i = 1; i < form.length; ++i) {
        code = (code << 6) | (byteAt(sequence, i) & 0x3FU);
    }
    return code;
}

void appendUnits(std::wstring& text, std::uint32_t code) {
    constexpr std::uint32_t kFirstSupplementary = 0x10000;
    if (code < kFirstSupplementary) {
        text.push_back(static_cast<wchar_t>(code));
        return;
    }
    text.push_back(static_cast<wchar_t>(0xD800 + ((code - kFirstSupplementary) >> 10)));
    text.push_back(static_cast<wchar_t>(0xDC00 + ((code - kFirstSupplementary) & 0x3FF)));
}

}  // namespace

std::optional<std::wstring> wideFromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t plain = asciiLength(bytes);
        text.append(bytes.begin(), bytes.begin() + plain);
        bytes.remove_prefix(plain);
        if (!bytes.empty()) {
            const SequenceForm* form = formOf(byteAt(bytes, 0));
            if (form == nullptr || !wellFormed(bytes, *form)) {
                return std::nullopt;
            }
            appendUnits(text, codeOf(bytes, *form));
            bytes.remove_prefix(form->length);
        }
    }
    return text;
}

}  // namespace tavocal
