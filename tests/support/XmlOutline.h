#pragma once

#include <string>

namespace tavocal {
class XmlNode;
}

namespace tavocal::test {

// A tree in one line, to compare with: elements as name[attribute=value ...](children), texts as
// 'text', comments as !text!, declarations as ?name|text?, neighbours with a blank in between.
std::string outline(const XmlNode& node);

// The outline of the document that `text` loads as, behind the result code if that isn't 0.
std::string outlineOf(const std::string& text);

}  // namespace tavocal::test
