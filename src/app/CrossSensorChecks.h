#pragma once

#include <array>
#include <memory>
#include <vector>

#include "numerics/Matrix.h"
#include "vocabulary/Judgement.h"

namespace tavocal {

class InertialSensor;
class RunContext;
class Sensor;

// The classes of motion sensors that the command names.
struct SelectedClasses {
    bool accelerometer = false;
    bool gyroscope = false;
    bool magnetometer = false;
};

// Holds the sensors of a run against each other, since sensors that each look good can still
// disagree: gravity and the magnetic field must keep their angle in every position, and what the
// gyroscope says the device turned by must match what the other two saw turn. Main thread, after
// the sensors have been calibrated or tested.
class CrossSensorChecks {
  public:
    // `calibratingSensors` are those that the run works on. `run` must outlive this object.
    CrossSensorChecks(const std::vector<std::shared_ptr<Sensor>>& calibratingSensors,
                      SelectedClasses selected, RunContext& run);

    // After a successful calibration of the Full flow. Throws CalibrationException that names every
    // disagreement; the report shows the first. A sensor without samples in a motion ends the
    // checks with the CalibrationException of rotationTrackingError.
    void checkCalibration();

    // After the tests of a run: turned back by the gyroscope, the mean of each stage must point
    // where the one before it did. The means are the accelerometer's, or without one the
    // magnetometer's. Each sensor may be empty. Puts its numbers into the gyroscope's report. True
    // if all agree, or if there is nothing to compare.
    bool compareRotation(const std::shared_ptr<Sensor>& acc, const std::shared_ptr<Sensor>& gyro,
                         const std::shared_ptr<Sensor>& mag) const;

    // How much the angle between gravity and the magnetic field differs between the positions, as
    // a standard deviation in degrees.
    static double dipAngleSpread(const InertialSensor& acc, const InertialSensor& mag);

    // The largest of the tracking errors of the motions, in the unit of `other`; NaN if one is.
    // `alignment` brings readings of the gyroscope into the frame of `other`. REQUIRES: a run of
    // the Full flow; throws CalibrationException "Internal error" if its times don't reach.
    double rotationDifference(const InertialSensor& gyro, const InertialSensor& other,
                              const Matrix& alignment) const;

  private:
    struct Comparison;
    static const std::array<Comparison, 7> kComparisons;

    bool runs(const Comparison& comparison) const;
    double valueOf(const Comparison& comparison) const;
    Judgement judge(const Comparison& comparison) const;

    // By role; empty where the run has none.
    std::array<std::shared_ptr<InertialSensor>, 6> sensors;
    SelectedClasses selected;
    RunContext& run;
};

}  // namespace tavocal
