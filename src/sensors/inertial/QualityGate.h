#pragma once

#include <string>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"

namespace tavocal {

class InertialSensor;

// Decides whether a sensor's calibration is fit to be written. A gate puts what it measured into
// the report, makes all of its checks, and ends in one CalibrationException that lists the failed
// ones, or in the report attribute "Success". A result that is not finite never passes. Runs after
// all results are in the sensor's fields and before the block is built, on the main thread.
class QualityGate {
  public:
    // `sensor` must outlive the gate.
    explicit QualityGate(InertialSensor& sensor);

    // The full gate. A MathException of the decompositions passes through.
    void checkSuccessGate();

    // The four-step gate, over one row of `means` per stage.
    void checkSuccess(const Matrix& means);

  private:
    void open(const Matrix& means);
    void close();
    void fail(const std::string& parameter, const std::string& text);

    void checkScaleAndRotation();
    void checkScaleElements();
    void checkNorms(const Vector& norms, double meanError);
    void checkMeanNorm(const Vector& norms);
    void checkReversibility();
    void checkFinite();
    void reportCalibrated(const std::string& rows, int count);
    Vector calibrated(const Vector& mean) const;

    InertialSensor& sensor;
};

}  // namespace tavocal
