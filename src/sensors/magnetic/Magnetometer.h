#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"
#include "sensors/inertial/InertialSensor.h"
#include "sensors/magnetic/MagneticEnvironment.h"
#include "sensors/magnetic/TurnDetector.h"

namespace tavocal {

class Ellipsoid;

// The earth's field is the reference, but neither its strength nor its dip angle is known: both are
// estimated from the run. The offset is the centre of the ellipsoid that all samples trace, the
// scale matrix removes its distortion and turns the sensor's axes onto those of the device, which
// the three turns of the Full flow show. Values in milliGauss, angles in radians.
class Magnetometer : public InertialSensor {
  public:
    explicit Magnetometer(const LUID& luid);
    ~Magnetometer() override;

    // Computes something in the Full and Minimal flows only.
    void calibrate() override;
    bool testCalibration() override;
    bool dataRecieved(const Sample& sample) override;
    std::string toDisplayText() const override;
    bool supportsRunType(RunCommand command) const override;

    bool rotationDetected(double since) override;
    bool movedFromReference() override;

    // The magnetic environment test; see MagneticEnvironment.
    void userSignalledEnd() override;
    bool checkMagPreTest_singleRotation(int first, int last, int& axis) override;
    bool checkMagPreTest_threeRotations(std::vector<std::uint32_t> boundaries) override;
    bool checkMagPreTest_translation() override;
    void evaluateMagEnvironment();

    // The limits of the flow.
    void setThresholds();
    // expectedValues for a field of strength `field` that points down by `dip`. Throws
    // CalibrationException for a secondary sensor in a device that can't have one.
    void setExpectedField(double dip, double field);
    // The dip angle, out of `steps` ones from `low` up to but not including `high`, for which the
    // still positions fit the expected readings best; `low` if none fits at all. `correctedMeans`
    // has one row per position. Leaves the last tried field in expectedValues.
    double searchDip(int steps, const Matrix& correctedMeans, double field, double low,
                     double high);
    // The mean angle between the expected readings and the turned means.
    double meanAlignmentError(const Matrix& rotation, const Matrix& correctedMeans) const;
    // scaleMatrix, offsetVector and the expected field from the fit of a Full run. REQUIRES:
    // stageMeans of the positions.
    void calcCorrection(const Ellipsoid& fit);

    MagneticEnvironment environment{*this};
    double sinDip = -1.0;
    double cosDip = -1.0;
    double cloudSpacing = 0.0;         // of the samples that the fit of a calibration sees
    double defaultCloudSpacing = 1.0;  // if the noise is unknown
    double minSampleSpacing = 0.0;     // of the samples that the fit of the environment test sees

  private:
    void calibrateByFlow();
    void calibrateFull();
    Matrix measureAxes(const Ellipsoid& fit) const;

    TurnDetector turnDetector;
};

}  // namespace tavocal
