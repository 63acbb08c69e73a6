#pragma once

#include <cstddef>
#include <string>

namespace tavocal {

class CmdLine;

// What the value of a calibration or test command says about the sensors: a run of the letters A,
// G and M, the word "motion", or ALS.
struct SensorText {
    bool isAls = false;  // "ALS" or "als" exactly
    bool hasA = false;   // the letter occurs anywhere, in either case; in "motion" it is the M
    bool hasG = false;
    bool hasM = false;
    bool isMotionWord = false;  // "motion" in any case: all three motion sensors
    std::size_t length = 0;     // of the text, in bytes

    // Something about the text asks for motion sensors; it may still be wrong.
    bool isMotion() const { return hasG || hasM || (hasA && !isAls) || isMotionWord; }
};

SensorText readSensorText(const std::string& text);

// Throws CmdLineException for the first rule that the text breaks, by itself or together with the
// options of a calibration or a test.
void checkSensorText(const SensorText& sensors, const CmdLine& cmdLine);

}  // namespace tavocal
