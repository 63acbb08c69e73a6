#pragma once

#include "sensors/model/Sensor.h"

namespace tavocal {

// A sensor that the system can't calibrate: it only passes its firmware block through.
class GenericSensor : public Sensor {
  public:
    using Sensor::Sensor;

    // Any format is good; there are no size bounds either.
    void validateCalibrationData(const CalibrationBlock& block) const override;
    // Always throws: there is no format but custom data.
    void readCalibrationXml(const XmlElement& data, int blockFormat, int version) override;
    // Writes the block to write or else the loaded one, whatever `block` is.
    void writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const override;
};

}  // namespace tavocal
