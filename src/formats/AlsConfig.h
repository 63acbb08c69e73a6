#pragma once

#include <string>
#include <vector>

namespace tavocal {

// What an automatic ambient light calibration takes from its configuration file.
struct AlsAutoConfig {
    int delayTime = 5;        // seconds
    std::vector<int> values;  // true light levels of the stages in lux, in stage order
};

// Reads a text file of lines "values=500, 1000, 2000" and "delay_time=5" into `config`, in place; a
// key that the file doesn't hold keeps its value, and the last line of a key wins. Lines that are
// no pair of key and value are passed over. Throws CalibrationException for a file that can't be
// read, for an unknown key, for bad numbers, and if there are no values at the end; `config` may
// then hold what stood before the bad line.
void loadAlsConfig(const std::string& path, AlsAutoConfig& config);

}  // namespace tavocal
