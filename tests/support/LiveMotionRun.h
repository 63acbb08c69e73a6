#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "process/NewMotionProcess.h"
#include "sampling/SensorManager.h"
#include "sensors/inertial/InertialSensor.h"
#include "simulator/recording/Recording.h"

namespace tavocal::test {

// What becomes of a recording on its way to the tool.
struct Lies {
    // What the firmware's clock shows, in microseconds, by the true time.
    std::function<std::uint64_t(std::uint64_t)> clock = [](std::uint64_t time) { return time; };
    std::function<void(std::vector<double>&)> values = [](std::vector<double>&) {};
};

// A live motion run without a firmware: the samples of a recording on their way through sampling,
// sensors, which hold a block that changes nothing, and sequence.
struct LiveMotionRun {
    LiveMotionRun(const simulator::Recording& recording, FlowType flow, const Lies& lies = {});

    // The failure of the sensor's calibration; kNoFailure if it has made a block.
    std::string calibrate(const std::string& name);

    std::map<std::string, std::shared_ptr<InertialSensor>> sensors;  // by display name
    std::shared_ptr<NewMotionProcess> process;
    SensorManager manager;
};

// A quarter of the usual rate, so that many runs take little time.
const simulator::Recording& shortRecording(simulator::Flow flow);

}  // namespace tavocal::test
