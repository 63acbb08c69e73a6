#pragma once

#include <memory>

#include "xml/XmlResult.h"

namespace tavocal {

class XmlCursor;
class XmlNode;

// Makes the node that the text at the cursor calls for and parses it into `node`, whose content
// is of no use unless the result is Success. REQUIRES: the cursor isn't at its end.
[[nodiscard]] XmlResult parseXmlNode(XmlCursor& cursor, std::unique_ptr<XmlNode>& node);

}  // namespace tavocal
