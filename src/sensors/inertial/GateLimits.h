#pragma once

namespace tavocal {

// The limits of the quality gates. A class sets them for its flow before it calibrates.
struct GateLimits {
    double offsetLimit = 0.0;
    double normStdLimit = 0.0;
    double expectedErrorLimit = 0.0;
    double whiteNoiseLimit = 0.0;
    double scaleLimit = 0.0;
    // Degrees in the full gate, a bound on off-diagonal elements in the four-step gate.
    double rotationLimit = 0.0;
    // The accepted band of the mean calibrated length.
    double expectedNorm = 0.0;
    double normTolerance = 0.0;
};

}  // namespace tavocal
