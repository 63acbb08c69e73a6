#pragma once

#include <cstdint>
#include <string>

namespace tavocal {

class XmlElement;

// The fields of a calibration file: decimal numbers in elements and attributes.

XmlElement& addElement(XmlElement& parent, const std::wstring& name);
void addComment(XmlElement& parent, const std::wstring& text);
// An element with the number as its text.
XmlElement& addNumber(XmlElement& parent, const std::wstring& name, std::int64_t number);
void setNumber(XmlElement& element, const std::wstring& attribute, std::int64_t number);

}  // namespace tavocal
