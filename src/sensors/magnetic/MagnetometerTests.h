#pragma once

#include "numerics/Vector.h"

namespace tavocal {

class Ellipsoid;
class InertialSensor;

// The tests of a calibrated magnetometer that lay flat and was turned by quarter turns about Z,
// with Y to the North, West, South and East. Each puts its numbers into the report under a subtree
// of its own, and records a failure for the operator's summary. True if passed. Main thread, after
// sampling. Fields in milliGauss, angles in degrees.

// The noise of each stage. REQUIRES: stageStds.
bool TestMagSTD(InertialSensor& sensor);
// One axis, the one that the device was turned about, must read the same all the time.
bool TestStaticValues(InertialSensor& sensor);
// The turns between the stages. REQUIRES, here and below: stageMeans.
bool TestMagValues(InertialSensor& sensor, const Vector& center);
// The headings of the stages.
bool TestDirection(InertialSensor& sensor, const Vector& center);
// The circle must be round: `fit` holds the two radii of the ellipse that all samples trace.
bool TestMagScale(InertialSensor& sensor, const Ellipsoid& fit);

// The compass headings of the first four stages, 0 to 360, about `center`; 0 for a stage that there
// isn't. Throws CalibrationException for a secondary sensor in a device that can't have one.
Vector calcHeadings(const InertialSensor& sensor, const Vector& center);

}  // namespace tavocal
