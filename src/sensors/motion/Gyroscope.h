#pragma once

#include <vector>

#include "sensors/inertial/InertialSensor.h"

namespace tavocal {

// The reference is the angle of known turns: the integral of the readings over a motion must give
// the rotation vector that the operator was asked for, and at rest the readings must be zero.
// Values in degrees per second, integrals in degrees.
//
// In a calibration the rows of stageMeans are the three measured turns, from which the bias has
// been taken already.
class Gyroscope : public InertialSensor {
  public:
    explicit Gyroscope(const LUID& luid);

    // Throws CalibrationException "Failed to calculate scale matrix" if the turns don't span the
    // space; a MathException of the gate passes through.
    void calibrate() override;
    bool testCalibration() override;

    // Adds one step to the turn since the last detection. `since` doesn't matter.
    bool rotationDetected(double since) override;
    void captureRotationBias() override;

    bool computeStageStatistics() override;
    Vector calibratedStageMean(int i) const override;

    // The limits of the flow.
    void setThresholds();
    // The turns of the flow and their angle. Throws CalibrationException for a secondary sensor in
    // a device that can't have one.
    void buildExpectedValues();
    // The inverse of the measured axes, each a turn over `angle` degrees. REQUIRES: stageMeans and
    // expectedValues of three turns.
    void calcScaleMatrix(double angle);
    // The turns of a test run, of readings as the firmware calibrates them, and their noise and
    // mean at rest. Throws CalibrationException if the run can't be cut into stages.
    void computeTestRotations();
    // Judges motionRotations. True if passed.
    bool TestIntegration();

    // Of each motion of a test run: the attitude at its end against its beginning, and the
    // integral of the readings in degrees.
    std::vector<Matrix> testRotations;
    Matrix motionRotations{6, 3};

    double nominalAngle = 0.0;           // degrees of one turn
    Vector rotationBias{0.0, 0.0, 0.0};  // what the detection of turns takes as rest

  private:
    void calibrateTurns();
    int integrateTurns(const std::vector<int>& ind, std::size_t stride);
    std::vector<Sample> stillSamples(const std::vector<int>& ind) const;
    void followMotion(int motion, const std::vector<int>& ind);
    void findStillNoise(const std::vector<int>& ind);
};

}  // namespace tavocal
