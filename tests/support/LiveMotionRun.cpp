#include "support/LiveMotionRun.h"

#include <algorithm>
#include <cmath>

#include "support/NamedSensor.h"
#include "support/Outcome.h"

namespace tavocal::test {

namespace {

struct Reading {
    std::uint64_t microseconds;
    std::string sensor;
    std::vector<double> values;
};

std::vector<Reading> inOrderOfTime(const simulator::Recording& recording) {
    std::vector<Reading> readings;
    for (const auto& [name, rows] : recording.rows) {
        for (const simulator::Row& row : rows) {
            readings.push_back(
                {static_cast<std::uint64_t>(std::llround(row.time * 1000.0)), name, row.values});
        }
    }
    std::stable_sort(readings.begin(), readings.end(), [](const Reading& a, const Reading& b) {
        return a.microseconds < b.microseconds;
    });
    return readings;
}

}  // namespace

LiveMotionRun::LiveMotionRun(const simulator::Recording& recording, FlowType flow, const Lies& lies)
    : process(std::make_shared<NewMotionProcess>(flow)) {
    process->runType = RunCommand::Calibrate;
    std::vector<std::shared_ptr<Sensor>> all;
    for (const auto& [name, rows] : recording.rows) {
        const auto sensor = makeNamedSensor(name);
        sensor->setCalibrationData(sensor->prependFormat(sensor->getStaticDefault()));
        sensors[name] = sensor;
        all.push_back(sensor);
    }
    manager.setSensors(all);
    manager.setProcess(process);
    manager.prepareSensors();
    for (Reading& reading : inOrderOfTime(recording)) {
        lies.values(reading.values);
        const std::uint64_t shown = lies.clock(reading.microseconds);
        manager.handleData(sensors.at(reading.sensor), reading.values,
                           static_cast<double>(shown) / 1000.0);
    }
}

std::string LiveMotionRun::calibrate(const std::string& name) {
    return failureOf([&] { sensors.at(name)->calibrate(); });
}

const simulator::Recording& shortRecording(simulator::Flow flow) {
    static auto* const recordings = new std::map<simulator::Flow, simulator::Recording>();
    const auto found = recordings->find(flow);
    if (found != recordings->end()) {
        return found->second;
    }
    simulator::RecordingOptions options;
    options.flow = flow;
    options.rateHz = 25.0;
    return recordings->emplace(flow, record(options)).first->second;
}

}  // namespace tavocal::test
