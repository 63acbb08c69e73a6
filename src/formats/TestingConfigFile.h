#pragma once

namespace tavocal {

struct TestingConfig;

// Replaces the fields whose keys stand in "TestingConfig.xml" of the working directory. A missing
// or malformed file changes nothing. A value goes through single precision; a text that is no
// number gives 0, and an int field takes the value cut toward zero, the nearest int if it lies
// outside the range, and 0 for NaN.
//
// A readable file without the root element prints the failure and throws CalibrationException.
// Throws what XmlDocument::load throws.
void loadTestingConfig(TestingConfig& config);

}  // namespace tavocal
