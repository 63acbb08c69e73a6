#pragma once

// What the tests of inertial sensors share.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/Failures.h"
#include "base/Text.h"
#include "numerics/NumericsTesting.h"
#include "numerics/TextForms.h"
#include "platform/Console.h"
#include "support/Angles.h"
#include "support/FakeRun.h"
#include "support/MessageOf.h"
#include "support/MotionReplay.h"

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

// What `action` writes on the console.
template <typename Action>
std::string printedBy(Action action) {
    ::testing::internal::CaptureStdout();
    action();
    platform::Console::instance().flush();
    return ::testing::internal::GetCapturedStdout();
}

// What a sensor reported, in one line, without its attributes and the comments on values: rows as
// name(1.000000,2.000000;).
inline std::string valuesOf(Sensor& sensor) {
    const std::vector<std::pair<std::string, std::string>> left = {
        {"!The ", "! "},         {"!Orig", "! "},  {"!Meas", "! "},
        {"!meas", "! "},         {"!noise", "! "}, {"!exp", "! "},
        {"[Rows=1 Cols=3", "]"}, {"Values(", "'"}, {"')", ")"}};
    std::string report = reportOf(sensor);
    report.erase(0, report.find("](") + 2);
    for (const auto& [start, end] : left) {
        for (auto at = report.find(start); at != std::string::npos; at = report.find(start)) {
            report.erase(at, report.find(end, at + 1) + end.size() - at);
        }
    }
    return report;
}

}  // namespace tavocal::test
