#pragma once

#include <string>

#include "numerics/Matrix.h"
#include "numerics/Vector.h"
#include "sensors/model/Verdict.h"

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

    void checkScaleAndRotation();
    void checkScaleElements();
    void checkMeanNorm(const Vector& norms);
    void checkNoise(double noise, const char* parameter);
    void checkReversibility();
    void checkFinite();
    void reportCalibrated(const std::string& rows, int count);
    Vector calibrated(const Vector& mean) const;
    // A gyroscope's means are turns.
    Unit unitOfMeans() const;

    InertialSensor& sensor;
    Verdict verdict;
};

}  // namespace tavocal
