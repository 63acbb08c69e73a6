#pragma once

#include <string>

namespace tavocal::simulator {

struct RecordingOptions;
struct RecordingTruth;

// The truth of a recording as lines of "key=value". Vectors and matrices are numbers with blanks
// between them, row by row, with as many digits as tell a double from its neighbours. For each
// sensor: offset, scale, axis_mapping, matrix (scale times axis_mapping) and noise. For each stage,
// counted from 1: begin_ms and end_ms.
std::string truthText(const RecordingOptions& options, const RecordingTruth& truth);

}  // namespace tavocal::simulator
