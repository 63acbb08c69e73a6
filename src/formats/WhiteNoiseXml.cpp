#include "formats/WhiteNoiseXml.h"

#include "base/LittleEndian.h"
#include "formats/XmlFields.h"
#include "sensors/InertialBlock.h"

namespace tavocal {

void writeWhiteNoisePayload(XmlElement& data, const CalibrationBlock& block) {
    requireBlockSize(block, kWhiteNoisePosition + sizeof(std::uint32_t));
    addNumber(data, L"WhiteNoise", readU32(block, kWhiteNoisePosition));
}

}  // namespace tavocal
