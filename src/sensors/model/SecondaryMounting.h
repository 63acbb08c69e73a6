#pragma once

namespace tavocal {

class Sensor;

// How the half of the device that holds the secondary sensors is turned against the primary half
// in the calibration positions, by form factor and hinge. A "MID" device folds as a "2IN1" with a
// hinge at the bottom ("BOTTOM", "TOP") or at the top ("LEFT", "RIGHT").
enum class SecondaryMounting { Bottom, Top, Left, Right };

// Throws CalibrationException "Undefined form factor encountered." for a form factor other than
// "2IN1" and "MID", "Undefined hinge configuration encountered." for a hinge outside its table.
SecondaryMounting secondaryMounting(const Sensor& sensor);

}  // namespace tavocal
