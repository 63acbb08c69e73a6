#pragma once

#include <memory>

#include "xml/XmlResult.h"

namespace tavocal {

class XmlCursor;
class XmlNode;

// Makes the node that the text at the cursor calls for, which its `parse` then reads. `node` stays
// as it is unless the result is Success. REQUIRES: the cursor isn't at its end.
[[nodiscard]] XmlResult makeXmlNode(const XmlCursor& cursor, std::unique_ptr<XmlNode>& node);

}  // namespace tavocal
