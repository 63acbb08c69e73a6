#include "simulator/recording/Recording.h"

#include "simulator/base/OutputFolder.h"
#include "simulator/device/Device.h"
#include "simulator/recording/DumpText.h"
#include "simulator/recording/TruthText.h"

namespace tavocal::simulator {

namespace {

// How long an operator who gives up stays in the step's position.
constexpr double kCutShortSeconds = 0.4;

// Works through the flow and writes down when the device was still.
std::vector<StillStage> playScript(const RecordingOptions& options, Operator& person) {
    std::vector<StillStage> stages;
    double now = 0.0;
    for (std::size_t step = 0; step < person.stepCount(); ++step) {
        const double still = person.perform(step, now);
        now = still + (person.givesUpIn(step) ? kCutShortSeconds : options.holdSeconds);
        stages.push_back({still * 1000.0, now * 1000.0});
        if (person.givesUpIn(step)) {
            break;
        }
    }
    return stages;
}

}  // namespace

Recording record(const RecordingOptions& options) {
    Recording recording;
    recording.options = options;
    Device device(options);
    Operator person(options, options.seed, device);
    recording.truth.stages = playScript(options, person);
    for (const SensorModel& sensor : device.sensors()) {
        recording.rows[sensor.name()];
        recording.truth.sensors[sensor.name()] = sensor.truth();
    }
    device.advanceTo(recording.truth.stages.back().end / 1000.0,
                     [&recording](const SensorModel& sensor, const Row& row) {
                         recording.rows[sensor.name()].push_back(row);
                     });
    return recording;
}

std::string Recording::dumpText(const std::string& sensorName) const {
    for (const char letter : options.sensors) {
        const std::optional<SensorKind> kind = kindFromLetter(letter);
        for (const bool secondary : {false, true}) {
            const auto found = rows.find(sensorName);
            if (kind && found != rows.end() && displayName(*kind, secondary) == sensorName) {
                return simulator::dumpText({*kind, secondary, options.formFactor, options.hinge},
                                           found->second);
            }
        }
    }
    return {};
}

std::string Recording::writeTo(const std::string& folder, bool crlf) const {
    OutputFolder output(folder, crlf);
    for (const auto& [name, samples] : rows) {
        output.write("dataDump" + name + ".csv", dumpText(name));
    }
    output.write("truth.txt", truthText(options, truth));
    return output.failure();
}

}  // namespace tavocal::simulator
