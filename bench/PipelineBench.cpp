#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "bench/Ratio.h"
#include "bench/ScratchFolder.h"
#include "formats/CsvParser.h"
#include "formats/DumpPaths.h"
#include "process/NewMotionProcess.h"
#include "sampling/SensorManager.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "simulator/recording/Recording.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::bench {
namespace {

constexpr const char* kPrefix = "dataDump";

std::vector<std::shared_ptr<Sensor>> motionSensors() {
    std::vector<std::shared_ptr<Sensor>> sensors;
    for (const std::uint16_t type : {kAccelerometerType, kGyroscopeType, kMagnetometerType}) {
        sensors.push_back(makeSensor({type, 0, 0, 0, kStaticFlag}));
    }
    return sensors;
}

void replayAndCalibrate(const std::string& folder) {
    const auto sensors = motionSensors();
    const auto process = std::make_shared<NewMotionProcess>(FlowType::Full);
    process->runType = RunCommand::Calibrate;
    process->prepare();
    SensorManager manager;
    manager.setSensors(sensors);
    manager.setProcess(process);
    manager.loadDump(folder, kPrefix, true);
    manager.playData();
    for (const auto& sensor : sensors) {
        sensor->calibrate();
    }
}

void readOnly(const std::string& folder) {
    SensorDataMap samples =
        CsvParser().readFromFile(dumpTemplate(folder, kPrefix), motionSensors(), true);
    benchmark::DoNotOptimize(samples);
}

// A full calibration from dumps against reading these dumps.
void calibrateOffline(benchmark::State& state) {
    const ScratchFolder folder;
    const std::string reason = simulator::record({}).writeTo(folder.path());
    if (!reason.empty()) {
        state.SkipWithError(reason.c_str());
        return;
    }
    reportRatio(
        state, [&] { replayAndCalibrate(folder.path()); }, [&] { readOnly(folder.path()); });
}
// Each run prints a line to the console.
BENCHMARK(calibrateOffline)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
}  // namespace tavocal::bench
