#pragma once

namespace tavocal {

class InertialSensor;

// The tests that judge what a sensor reports as it stands, with the firmware's calibration in
// force. Each puts its numbers into the report and records a failure for the operator's summary.
// True if passed. Main thread, after sampling.

// Mean, noise and spikes of every stage. REQUIRES: stageMeans and stageStds of the stages.
bool TestAverage(InertialSensor& sensor, double averageLimit, double noiseLimit, double spikeLimit);

// The same for a Minimal run, from its sums and samples, with the limits of the sensor.
bool faceUpTest(InertialSensor& sensor);

}  // namespace tavocal
