#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "simulator/device/DeviceOptions.h"
#include "simulator/device/SensorModel.h"
#include "simulator/operator/Operator.h"
#include "simulator/world/StillStage.h"

namespace tavocal::simulator {

// All that decides a recording. The same options give the same recording, bit for bit.
struct RecordingOptions : DeviceOptions, OperatorOptions {};

// What a perfect calibration and a perfect stage detection would find.
struct RecordingTruth {
    std::map<std::string, SensorTruth> sensors;  // by display name
    std::vector<StillStage> stages;
};

// The samples of a run, with what made them:
//
//     RecordingOptions options;
//     options.flow = Flow::FourSteps;
//     const Recording recording = record(options);
struct Recording {
    RecordingOptions options;
    std::map<std::string, std::vector<Row>> rows;  // by display name
    RecordingTruth truth;

    // The text of one sensor's dump, with LF line ends; empty for a sensor that isn't there.
    std::string dumpText(const std::string& sensorName) const;

    // Writes a dump for each sensor, "dataDump" + name + ".csv", and "truth.txt" into a folder,
    // which is made if need be. The result is empty on success, else the reason.
    [[nodiscard]] std::string writeTo(const std::string& folder, bool crlf = false) const;
};

// REQUIRES: all numbers of the options finite, rates and times above 0, a step for the mistake.
Recording record(const RecordingOptions& options);

}  // namespace tavocal::simulator
