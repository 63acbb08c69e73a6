#include "calibration/WhiteNoiseXml.h"

#include "base/Bytes.h"
#include "calibration/InertialBlock.h"
#include "calibration/XmlFields.h"
#include "xml/XmlElement.h"

namespace tavocal {

namespace {

constexpr const wchar_t* kWhiteNoiseName = L"WhiteNoise";

}  // namespace

void writeWhiteNoisePayload(XmlElement& data, const CalibrationBlock& block) {
    requireBlockSize(block, kWhiteNoisePosition + sizeof(std::uint32_t));
    addNumber(data, kWhiteNoiseName, ByteReader(block).u32(kWhiteNoisePosition));
}

std::uint32_t readWhiteNoisePayload(const XmlElement& data) {
    const XmlNode* noise = data.findChild(kWhiteNoiseName);
    if (noise == nullptr) {
        throw CalibrationException("XML parsing error. Missing white noise value.");
    }
    return static_cast<std::uint32_t>(numberIn(*noise));
}

}  // namespace tavocal
