#include "formats/XmlBytes.h"

#include <memory>

#include "base/Text.h"
#include "formats/XmlFields.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {

void addBytes(XmlElement& parent, const std::wstring& name, std::span<const std::uint8_t> bytes) {
    XmlElement& element = addElement(parent, name);
    setNumber(element, L"DataLength", static_cast<std::int64_t>(bytes.size()));
    element.addChild(std::make_unique<XmlText>(widen(hexText(bytes.data(), bytes.size()))));
}

}  // namespace tavocal
