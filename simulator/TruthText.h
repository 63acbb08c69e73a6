#pragma once

#include <string>

namespace tavocal::simulator {

struct RecordingOptions;
struct RecordingTruth;

// The truth of a recording as lines of "key=value" (KeyValueText.h): the options that matter; for
// each sensor its offset, scale, axis_mapping, matrix (scale times axis_mapping) and noise; for
// each stage its begin_ms and end_ms.
std::string truthText(const RecordingOptions& options, const RecordingTruth& truth);

}  // namespace tavocal::simulator
