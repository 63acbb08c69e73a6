#pragma once

#include <vector>

#include "numerics/Sample.h"
#include "numerics/Vector.h"
#include "sensors/inertial/Stillness.h"

namespace tavocal {

// What the script of a run asks of a sensor while samples come in: whether the device is still, has
// turned or has moved. A class whose readings show a turn or a movement says how. On the delivering
// thread; times are in milliseconds.
class StageIndicator {
  public:
    // `samples` must outlive the indicator; samples may only be added to it.
    explicit StageIndicator(const std::vector<Sample>& samples);
    virtual ~StageIndicator() = default;

    virtual bool rotationDetected(double /*since*/) { return false; }
    // The newest sample is further than moveThreshold from the reference vector.
    virtual bool movedFromReference() { return false; }
    virtual void captureRotationBias() {}
    void setReferenceVector(const Vector& reference) { referenceVector = reference; }
    // The last window was still. In the first stage the limits are tightened to what it showed.
    bool isStill(bool firstStage) { return stillness.isStill(firstStage); }
    // For how long the device stayed as still after `t` as in the window from it.
    double stillExtension(double t) { return stillness.stillExtension(t); }
    Vector lastWindowMedian();

    Stillness stillness;
    double moveThreshold = 0.0;
    double rotationThreshold = 0.0;
    Vector referenceVector{0.0, 0.0, 0.0};

  protected:
    bool newestMovedFromReference() const;

  private:
    const std::vector<Sample>& watchedSamples;
};

}  // namespace tavocal
