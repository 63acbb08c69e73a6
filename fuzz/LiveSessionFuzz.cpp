#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "app/MakeProcess.h"
#include "commandline/RunSettings.h"
#include "fuzz/Attempt.h"
#include "fuzz/InputBytes.h"
#include "process/Process.h"
#include "sampling/SensorManager.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"

namespace {

using tavocal::FlowType;
using tavocal::RunCommand;

tavocal::RunSettings settingsOf(std::uint8_t choice) {
    tavocal::RunSettings settings;
    settings.runCommand = choice % 2 == 0 ? RunCommand::Calibrate : RunCommand::TestCalibration;
    settings.isCalibrating = choice % 2 == 0;
    settings.isTesting = !settings.isCalibrating;
    settings.flowType = static_cast<FlowType>(choice / 2 % 5);
    return settings;
}

// A session of an accelerometer, a gyroscope and a magnetometer, as the records come in.
class Session {
  public:
    explicit Session(std::uint8_t choice) : settings(settingsOf(choice)) {
        for (const std::uint16_t type :
             {tavocal::kAccelerometerType, tavocal::kGyroscopeType, tavocal::kMagnetometerType}) {
            sensors.push_back(tavocal::makeSensor({type, 0, 0, 0, tavocal::kStaticFlag}));
            sensors.back()->setManager(&manager.context());
        }
        process = tavocal::makeProcess(settings);
        manager.setSensors(sensors);
        manager.setProcess(process);
    }

    // A record, and more of the same at steady times, as of a device that lies still.
    void takeRecords(tavocal::fuzz::InputBytes& input) {
        const std::uint8_t head = input.byte();
        const std::uint8_t stepMs = input.byte();
        auto time = static_cast<double>(input.take<std::uint64_t>()) / 1000.0;
        const auto& sensor = sensors[head % sensors.size()];
        std::array<double, 3> values{};
        for (double& value : values) {
            value = static_cast<double>(input.take<std::int32_t>()) / sensor->rawDivisor;
        }
        for (int i = 0; i <= head / 3; ++i) {
            manager.handleData(sensor, values, time);
            time += stepMs;
        }
        // The operator goes on as the stages are found.
        process->currentStep = process->stagesDone < 0 ? 0 : process->stagesDone;
    }

    void work() {
        for (const auto& sensor : sensors) {
            tavocal::fuzz::attempt([&] {
                settings.isCalibrating ? sensor->calibrate()
                                       : static_cast<void>(sensor->testCalibration());
            });
        }
        manager.failureSummary();
    }

  private:
    tavocal::RunSettings settings;
    tavocal::SensorManager manager;
    std::vector<std::shared_ptr<tavocal::Sensor>> sensors;
    std::shared_ptr<tavocal::Process> process;
};

}  // namespace

// The first byte picks what the session is for, the rest is its records: sensor and how often more,
// milliseconds between those, a time in microseconds and three values.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavocal::fuzz::InputBytes input(data, size);
    Session session(input.byte());
    while (!input.empty()) {
        session.takeRecords(input);
    }
    session.work();
    return 0;
}
