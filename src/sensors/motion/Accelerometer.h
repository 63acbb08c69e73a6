#pragma once

#include "sensors/inertial/InertialSensor.h"

namespace tavocal {

// Gravity is the only reference: held still in a known position, a perfect accelerometer reads one
// g along a known axis. Values in g.
class Accelerometer : public InertialSensor {
  public:
    explicit Accelerometer(const LUID& luid);

    void calibrate() override;
    bool testCalibration() override;
    void setCheckVsOriginalAxis(bool check) override;
    bool movedFromReference() override;

    // The limits of the flow.
    void setThresholds();
    // What the sensor should read in each position, by form factor and hinge for a secondary
    // sensor. Throws CalibrationException for one that the device can't have.
    void buildExpectedValues();

    double gravity = 1.0;           // length of the expected vectors
    double gravityReference = 0.0;  // length that a calibrated vector has in the four-step scale

  private:
    void calibrateByFlow();
    void calibrateFull();
    void solveAffineMap();
    void calibrateFourSteps();
    void mapFourStepAxes();
    void findFourStepOffset();
    void findFourStepScale();
    void CheckAxisMappingVsOrig();
    void judgeAxisMapping(bool isOriginal, const char* reason);

    bool checkVsOriginalAxis = false;
};

}  // namespace tavocal
