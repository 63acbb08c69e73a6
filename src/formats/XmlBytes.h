#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tavocal {

class XmlElement;

// Bytes in a calibration file: an element with their number as "DataLength" and, as its text, two
// hexadecimal digits for each.

void addBytes(XmlElement& parent, const std::wstring& name, std::span<const std::uint8_t> bytes);

}  // namespace tavocal
