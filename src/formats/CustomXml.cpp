#include "formats/CustomXml.h"

#include <span>

#include "formats/XmlBytes.h"

namespace tavocal {

void writeCustomPayload(XmlElement& data, const CalibrationBlock& block) {
    requireBlockSize(block, kBlockHeadSize);
    addBytes(data, L"OEMCustomData", std::span(block).subspan(kBlockHeadSize));
}

}  // namespace tavocal
