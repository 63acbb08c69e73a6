#pragma once

#include "sensors/inertial/FirmwareReversal.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

// A sensor of three axes as the firmware knows it: what its calibration block must be, how one is
// loaded and told in a calibration file, and how what the block does to samples is undone.
class InertialBlockSensor : public Sensor {
  public:
    explicit InertialBlockSensor(const LUID& luid);

    // The form factor and the hinge too.
    void loadFromFirmware(SDT& firmware) override;
    // A dynamic sensor's block of another format is dropped with a warning.
    void setCalibrationData(CalibrationBlock block) override;
    // A block may carry vendor data behind its own fields.
    void validateCalibrationData(const CalibrationBlock& block) const override;
    // By the sensor's Flags a static or a dynamic payload, or none. The present block of a dynamic
    // sensor must have been loaded, since only its white noise is replaced.
    void readCalibrationXml(const XmlElement& data, int blockFormat, int version) override;
    // The payload is custom for a sensor that is neither static nor dynamic.
    void writeCalibrationXml(XmlElement& data, const CalibrationBlock& block) const override;

    void calcReverseSdt() override;
    void reverseStaticCalibration(Sample& sample) override;

    CalibrationBlock prependFormat(const CalibrationBlock& body) const;
    // The 38-byte body of the identity calibration. Throws CalibrationException
    // "Internal error: not implemented" unless the sensor is static.
    CalibrationBlock getStaticDefault() const;

    FirmwareReversal reversal;  // empty without a firmware block

  private:
    void importStatic(const XmlElement& data, int version);
    void importWhiteNoise(double value);

    // What a calibration file gives a dynamic sensor; stored when its block loads.
    bool whiteNoiseImported = false;
    double importedWhiteNoise = 0.0;
    bool reversalLogged = false;
};

}  // namespace tavocal
