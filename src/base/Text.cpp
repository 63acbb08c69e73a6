#include "base/Text.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace tavocal {

namespace {

// The longest finite double in fixed notation: a sign, 309 digits, the point and six digits.
constexpr std::size_t kFixedCapacity = 336;

void appendCodePoint(std::string& out, std::uint32_t code) {
    const auto put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

bool isSurrogate(std::uint32_t unit, std::uint32_t first) {
    return unit >= first && unit < first + 0x400;
}

}  // namespace

void appendFixed(std::string& out, double value) {
    if (std::isnan(value)) {
        out += "nan";
        return;
    }
    if (std::isinf(value)) {
        out += value < 0 ? "-inf" : "inf";
        return;
    }
    std::array<char, kFixedCapacity> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                      std::chars_format::fixed, 6);
    out.append(digits.data(), result.ptr);
}

std::string fixedText(double value) {
    std::string text;
    appendFixed(text, value);
    return text;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return result;
}

std::wstring widen(std::string_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (const char c : text) {
        result.push_back(static_cast<wchar_t>(static_cast<unsigned char>(c)));
    }
    return result;
}

std::string toUtf8(std::wstring_view text) {
    constexpr std::uint32_t kReplacement = 0xFFFD;
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto code = static_cast<std::uint32_t>(text[i]);
        if (isSurrogate(code, 0xD800) && i + 1 < text.size() &&
            isSurrogate(static_cast<std::uint32_t>(text[i + 1]), 0xDC00)) {
            const auto low = static_cast<std::uint32_t>(text[++i]);
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
        } else if (isSurrogate(code, 0xD800) || isSurrogate(code, 0xDC00) || code > 0x10FFFF) {
            code = kReplacement;
        }
        appendCodePoint(result, code);
    }
    return result;
}

std::string narrow(std::wstring_view text) {
    std::string result;
    result.reserve(text.size());
    for (const wchar_t c : text) {
        const auto code = static_cast<std::uint32_t>(c);
        result.push_back(code > 0xFF ? '?' : static_cast<char>(static_cast<unsigned char>(code)));
    }
    return result;
}

std::string hexText(const unsigned char* bytes, std::size_t count) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string result;
    result.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        result.push_back(kDigits[bytes[i] >> 4]);
        result.push_back(kDigits[bytes[i] & 0x0F]);
    }
    return result;
}

std::string withCrLf(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n') {
            result.push_back('\r');
        }
        result.push_back(c);
    }
    return result;
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

}  // namespace tavocal
