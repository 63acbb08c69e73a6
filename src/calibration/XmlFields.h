#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Failures.h"

namespace tavocal {

class XmlElement;
class XmlNode;

// The fields of a calibration file: decimal numbers in elements and attributes. The readers need
// a tree that was parsed and take any node that bears the name, so a declaration too: it counts as
// an element without attributes and children. They throw CalibrationException.

XmlElement& addElement(XmlElement& parent, const std::wstring& name);
void addComment(XmlElement& parent, const std::wstring& text);
// An element with the number as its text.
XmlElement& addNumber(XmlElement& parent, const std::wstring& name, std::int64_t number);
void setNumber(XmlElement& element, const std::wstring& attribute, std::int64_t number);

// The node's text as a number; an empty text is 0. Throws what parseInt throws.
std::int32_t numberIn(const XmlNode& node);
// The text of an attribute; a failure that tells its name if there is none.
std::string requiredText(const XmlNode& node, std::wstring_view attribute);
// The same with a failure for an empty text too.
std::string requiredNonEmptyText(const XmlNode& node, std::wstring_view attribute);
std::int32_t requiredNumber(const XmlNode& node, std::wstring_view attribute);

std::string nodeName(const XmlNode& node);
// `text` and the node that it is about.
CalibrationException failureAt(const XmlNode& node, const std::string& text);

}  // namespace tavocal
