#pragma once

#include "calibration/CalibrationBlock.h"

namespace tavocal {

class XmlElement;

// The payload of an ambient light block: the scale, the steps and the vendor data. Whether there is
// vendor data is judged by the steps of `original`, the block that was loaded; without one, in an
// empty `original`, there is none. Throws CalibrationException for a block of another format or one
// that is too short.
void writeAmbientLightPayload(XmlElement& data, const CalibrationBlock& block,
                              const CalibrationBlock& original);

// The block of a parsed payload. Steps that are missing at the end are zero; those beyond the
// declared number are checked and left out. Throws CalibrationException.
CalibrationBlock readAmbientLightPayload(const XmlElement& data, int formatId, int version);

}  // namespace tavocal
