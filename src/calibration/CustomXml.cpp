#include "calibration/CustomXml.h"

#include <algorithm>
#include <span>

#include "calibration/XmlBytes.h"
#include "calibration/XmlFields.h"

namespace tavocal {

void writeCustomPayload(XmlElement& data, const CalibrationBlock& block) {
    const std::size_t head = std::min(block.size(), kBlockHeadSize);
    addBytes(data, L"OEMCustomData", std::span(block).subspan(head));
}

void readCustomPayload(const XmlNode& custom, CalibrationBlock& block) {
    const auto bytes = readBinData(custom, requiredNumber(custom, kDataLength));
    block.insert(block.end(), bytes.begin(), bytes.end());
}

}  // namespace tavocal
