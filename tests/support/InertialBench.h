#pragma once

// What the tests of inertial sensors share.

#include <cmath>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "numerics/NumericsTesting.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"

namespace tavocal::test {

// A sensor in a run of still stages that a test fills by hand.
template <typename Class>
struct InertialBench {
    explicit InertialBench(const std::string& name, FlowType flow,
                           RunCommand command = RunCommand::Calibrate)
        : run(flow, command), sensor(std::dynamic_pointer_cast<Class>(makeNamedSensor(name))) {
        sensor->setManager(&run);
    }

    // Two seconds at 100 Hz, of which the first is a stage of 100 samples, and the rest a single
    // sample. Each axis swings by `noise` around its value.
    void addStage(const Vector& value, double noise = 0.0) {
        const double begin = 1000.0 * static_cast<double>(run.times.size());
        run.times.insert(run.times.end(), {begin, begin + 1000.0});
        for (int i = 1; i <= 101; ++i) {
            sensor->bufferedData.push_back(
                {begin + 10.0 * i, value - (i % 2 == 0 ? noise : -noise)});
        }
    }

    FakeRun run;
    std::shared_ptr<Class> sensor;
};

}  // namespace tavocal::test
