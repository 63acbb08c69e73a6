#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tavocal {

class XmlElement;
class XmlNode;

// Bytes in a calibration file: an element with their number as its "DataLength" and, as its text,
// two hexadecimal digits for each.

constexpr const wchar_t* kDataLength = L"DataLength";
constexpr const wchar_t* kVendorDataName = L"VendorData";

XmlElement& addBytes(XmlElement& parent, const std::wstring& name,
                     std::span<const std::uint8_t> bytes);

// The bytes of a parsed element that declares `length` of them. Throws CalibrationException with
// the text `mismatch` and the element's name unless the text is that many pairs of hexadecimal
// digits.
std::vector<std::uint8_t> readBytes(const XmlNode& node, std::int32_t length,
                                    const std::string& mismatch);

// The number that a parsed "VendorData" must declare.
std::int32_t vendorDataLength(const XmlNode& vendorData);

// readBytes where a length below 1 means that there are no bytes, whatever the text is.
std::vector<std::uint8_t> readBinData(const XmlNode& node, std::int32_t length);

}  // namespace tavocal
