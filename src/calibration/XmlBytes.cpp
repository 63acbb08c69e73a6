#include "calibration/XmlBytes.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <memory>

#include "base/Text.h"
#include "base/TextToNumber.h"
#include "calibration/XmlFields.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {

namespace {

bool isHexText(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isxdigit(c) != 0; });
}

bool isBytesText(const std::string& text, std::int32_t length) {
    return length >= 0 && text.size() == 2 * static_cast<std::size_t>(length) && isHexText(text);
}

}  // namespace

XmlElement& addBytes(XmlElement& parent, const std::wstring& name,
                     std::span<const std::uint8_t> bytes) {
    XmlElement& element = addElement(parent, name);
    setNumber(element, kDataLength, static_cast<std::int64_t>(bytes.size()));
    element.addChild(std::make_unique<XmlText>(widen(hexText(bytes.data(), bytes.size()))));
    return element;
}

std::vector<std::uint8_t> readBytes(const XmlNode& node, std::int32_t length,
                                    const std::string& mismatch) {
    const std::string text = narrow(node.innerText());
    if (!isBytesText(text, length)) {
        throw failureAt(node, mismatch);
    }
    std::vector<std::uint8_t> bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* pair = text.data() + 2 * i;
        std::from_chars(pair, pair + 2, bytes[i], 16);
    }
    return bytes;
}

std::int32_t vendorDataLength(const XmlNode& vendorData) {
    return parseInt(requiredNonEmptyText(vendorData, kDataLength));
}

std::vector<std::uint8_t> readBinData(const XmlNode& node, std::int32_t length) {
    if (length < 1) {
        return {};
    }
    return readBytes(node, length,
                     "XML parsing error. BinData size does not match declared length.");
}

}  // namespace tavocal
