#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "firmware/SDT.h"
#include "vocabulary/RunTypes.h"

namespace tavocal {

class Sensor;

// The interval of a live run's reports, in milliseconds: that of -SamplingInterval, if it is
// `wanted`; else the run's own, which for an ambient light run is no shorter than any sensor can
// do. Tells the operator if a sensor doesn't tell what it can.
std::uint32_t chooseReportInterval(std::optional<int> wanted, RunCommand runType,
                                   const std::vector<std::shared_ptr<Sensor>>& sensors,
                                   const SDT::ChannelFactory& makeChannel);

}  // namespace tavocal
