#pragma once

namespace tavocal {

struct SamplingState;

// Checks that every sensor delivered up to the end of the run, measured by the last stage
// indicator. Throws CalibrationException with the names of those that did not. Passes over a
// magnetic environment test, and a run that has failed already.
void checkDataStreamingValidity(const SamplingState& state);

}  // namespace tavocal
