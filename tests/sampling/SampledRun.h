#pragma once

#include <cmath>

#include "formats/CsvParser.h"
#include "sampling/FakeRunParts.h"
#include "sampling/SensorManager.h"
#include "support/TempFolder.h"

namespace tavocal::test {

// A run of two stages, each of which one sample of the accelerometer ends.
struct SampledRun {
    explicit SampledRun(const std::vector<std::string>& names,
                        RunCommand command = RunCommand::Calibrate)
        : sensors(fakeSensors(names)) {
        process->runType = command;
        process->stageCount = 2;
        process->stagesDone = 0;
        process->onControl = [this] {
            log += "! ";
            ++process->stagesDone;
            process->canMoveNext = true;
        };
        for (std::size_t i = 0; i < sensors.size(); ++i) {
            fake(i).onSample = [this, i](const Sample& sample) {
                log += sensors[i]->name[0] + std::to_string(std::lround(sample.timestamp)) + " ";
            };
        }
        manager.setSensors(sensors);
        manager.setProcess(process);
    }
    template <typename Failure>
    void failAt(std::size_t sensor) {
        fake(sensor).onSample = [](const Sample&) { throw Failure("torn off"); };
    }
    FakeSensor& fake(std::size_t sensor) { return static_cast<FakeSensor&>(*sensors[sensor]); }
    void live(std::size_t sensor, double time, const std::vector<double>& values = {7.0}) {
        manager.handleData(sensors[sensor], values, time);
    }
    // Replays dumps with samples at the times of each sensor.
    std::string replay(const std::vector<std::vector<double>>& times) {
        const TempFolder folder;
        SensorDataMap samples;
        for (std::size_t i = 0; i < times.size(); ++i) {
            for (const double time : times[i]) {
                samples[sensors[i]].push_back({time, {1.0}});
            }
        }
        CsvParser().writeToFile(folder.path() + "\\d.csv", samples);
        manager.loadDump(folder.path(), "d", false);
        return messageOf<std::exception>([&] { manager.playData(); });
    }
    std::string waited() {
        return failureOf([&] { manager.waitForStepFinish(true); });
    }

    std::vector<std::shared_ptr<Sensor>> sensors;
    std::shared_ptr<FakeProcess> process = std::make_shared<FakeProcess>();
    SensorManager manager;
    std::string log;  // who took a sample when, such as "A20", and "!" for the sequence
};

}  // namespace tavocal::test
