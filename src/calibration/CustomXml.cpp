#include "calibration/CustomXml.h"

#include <span>

#include "calibration/XmlBytes.h"
#include "calibration/XmlFields.h"

namespace tavocal {

void writeCustomPayload(XmlElement& data, const CalibrationBlock& block) {
    requireBlockSize(block, kBlockHeadSize);
    addBytes(data, L"OEMCustomData", std::span(block).subspan(kBlockHeadSize));
}

void readCustomPayload(const XmlElement& custom, CalibrationBlock& block) {
    const auto bytes = readBinData(custom, requiredNumber(custom, kDataLength));
    block.insert(block.end(), bytes.begin(), bytes.end());
}

}  // namespace tavocal
