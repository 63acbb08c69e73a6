#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "simulator/device/SensorModel.h"
#include "simulator/operator/LightMistake.h"
#include "simulator/world/StillStage.h"

namespace tavocal::simulator {

// All that decides a recording of the ambient light sensors.
struct LightOptions {
    std::uint64_t seed = 1;
    std::vector<int> levels = {500, 1000, 2000};  // lux, at least one
    int delaySeconds = 5;                         // the rig's longest delay, for its settings file
    double gain = 0.5;                            // what the sensor reads of each lux
    bool secondary = false;
    double secondaryGain = 0.8;
    std::string formFactor = "2IN1";
    std::string hinge = "BOTTOM";

    double rateHz = 50.0;
    double jitterMs = 0.2;
    double noiseLux = 0.15;   // standard deviation of a reading
    double flickerLux = 0.4;  // swing of the light
    double rampSeconds = 0.8;
    double holdSeconds = 4.0;  // time at a level, without the ramp to it

    LightMistake mistake = LightMistake::None;
};

struct LightRecording {
    LightOptions options;
    std::map<std::string, std::vector<Row>> rows;  // by display name
    std::vector<StillStage> stages;                // from the end of each ramp

    // The text of one sensor's dump, with LF line ends; empty for a sensor that isn't there.
    std::string dumpText(const std::string& sensorName) const;
    // The settings file of the rig: its levels and its delay.
    std::string settingsText() const;
    // The lines of "truth.txt": the options, for each sensor its gain and the multiplier that
    // undoes it, and the stages.
    std::string truthText() const;

    // Writes the dumps, "als.txt" and "truth.txt" into a folder, which is made if need be. The
    // result is empty on success, else the reason.
    [[nodiscard]] std::string writeTo(const std::string& folder, bool crlf = false) const;
};

// REQUIRES: a level; all numbers finite, gains, rates and times above 0.
LightRecording recordLight(const LightOptions& options);

}  // namespace tavocal::simulator
