#pragma once

namespace tavocal {

// What a run does.
enum class RunCommand {
    None = 0,  // calibration files are moved, nothing is sampled
    Calibrate = 1,
    CalibrateAls = 2,
    MagEnvironmentTest = 3,
    TestCalibration = 4,
};

// The stage table of a motion run.
enum class FlowType {
    Full = 0,               // 7 stages: four positions and three turns
    Minimal = 1,            // 1 stage, face up
    FourSteps = 2,          // 4 stages with quarter turns between them
    MagAccuracyTest = 3,    // 4 stages with quarter turns about Z between them
    AccelerometerOnly = 4,  // the 4 positions of Full, without the turns
};

}  // namespace tavocal
