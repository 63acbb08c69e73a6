#pragma once

#include <string>
#include <vector>

#include "simulator/device/SensorModel.h"

namespace tavocal::simulator {

// Whose samples a dump holds.
struct DumpHead {
    SensorKind kind;
    bool secondary;
    std::string formFactor;
    std::string hinge;
};

// A dump file: the sensor's identifier, form factor and hinge, the column header with the unit, and
// a line for each sample with all numbers as "%f" prints them. Lines end in LF.
std::string dumpText(const DumpHead& head, const std::vector<Row>& rows);

}  // namespace tavocal::simulator
