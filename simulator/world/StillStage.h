#pragma once

namespace tavocal::simulator {

// When nothing changed in a stage of a recording, in milliseconds.
struct StillStage {
    double begin = 0.0;
    double end = 0.0;
};

}  // namespace tavocal::simulator
