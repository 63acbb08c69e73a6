#pragma once

#include <string>

namespace tavocal::simulator {

struct RecordingOptions;
struct RecordingTruth;
struct SensorTruth;

// The truth of a sensor as lines of "key=value" (KeyValueText.h) with keys that begin with `name`:
// offset, scale, axis_mapping, matrix (scale times axis_mapping) and noise.
std::string sensorTruthText(const std::string& name, const SensorTruth& truth);

// The truth of a recording: the options that matter, the truth of each sensor, and for each stage
// its begin_ms and end_ms.
std::string truthText(const RecordingOptions& options, const RecordingTruth& truth);

}  // namespace tavocal::simulator
