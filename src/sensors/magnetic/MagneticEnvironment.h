#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "numerics/Sample.h"
#include "sensors/magnetic/Ellipsoid.h"
#include "vocabulary/Judgement.h"

namespace tavocal {

class Sensor;

// The judgement of a place by a magnetometer. The operator first turns the device once about each
// axis: an ellipsoid fitted to these samples makes a perfect sphere of the readings. Then the
// device is carried around without being turned. In a uniform field the corrected readings keep
// their angle to the device's Z axis, the dip angle; a stray field changes it from place to place.
//
// Fields in milliGauss, angles in degrees.
//
// Threads: `add` runs on the thread that delivers samples, everything else on the main thread while
// samples may arrive. dataMutex guards the sensor's bufferedData, bufferedData_testPhase and
// dipAngles; it is held only for as long as they are walked or copied, never during a fit.
class MagneticEnvironment {
  public:
    // `sensor`, whose bufferedData takes the samples of the rotations, must outlive this object.
    explicit MagneticEnvironment(Sensor& sensor);

    void add(const Sample& sample);

    // Whether the samples first to last, both included, show one full turn, and the axis that it
    // went about. Throws CalibrationException "Index of bufferedData invalid.".
    bool singleRotation(int first, int last, int& axis);
    // Whether three full turns, which end before the three sample counts in `boundaries`, went
    // about three different axes. Throws as singleRotation.
    bool threeRotations(const std::vector<std::uint32_t>& boundaries);
    // Whether the walk ended near its start, but not in it. Throws CalibrationException "length of
    // bufferedData_testPhase invalid." before the first sample.
    bool translation();

    // Ends the rotations: findFit, and samples that arrive after it belong to the walk.
    void endRotations(double minSampleSpacing);
    // Fits preTestFit to the samples of the rotations that are there now, and judges the fit.
    // Throws CalibrationException if it failed or its error is too large.
    void findFit(double minSampleSpacing);
    // REQUIRES: a fit.
    double dipAngle(const Sample& sample) const;

    // The verdict, into the report. Throws CalibrationException if the place is no good, or if no
    // walk was recorded.
    void evaluate();

    mutable std::mutex dataMutex;
    std::vector<Sample> bufferedData_testPhase;  // of the walk
    std::vector<double> dipAngles;               // one for each sample of the walk
    std::atomic<bool> fitDone = false;           // set once preTestFit is complete
    Ellipsoid preTestFit;

  private:
    std::vector<Sample> rotationSamples(int first, int last) const;
    void record(Judgement judgement, const char* parameter) const;
    void fitRotations(double minSampleSpacing);
    [[noreturn]] void failFit();
    // Reports a value and its judgement; throws CalibrationException with `reason` if it failed.
    void judge(Judgement judgement, const char* parameter, const char* comment, const char* reason,
               Unit unit);

    Sensor& sensor;
};

}  // namespace tavocal
