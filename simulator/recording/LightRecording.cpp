#include "simulator/recording/LightRecording.h"

#include <algorithm>
#include <cmath>

#include "simulator/base/OutputFolder.h"
#include "simulator/device/SampleClock.h"
#include "simulator/recording/DumpText.h"
#include "simulator/recording/KeyValueText.h"
#include "simulator/world/Lamp.h"

namespace tavocal::simulator {

namespace {

constexpr double kStrongFlicker = 12.0;

bool isPresent(bool secondary, const LightOptions& options) {
    return !secondary || options.secondary;
}

double gainOf(bool secondary, const LightOptions& options) {
    return secondary ? options.secondaryGain : options.gain;
}

// Takes the lamp through its levels, and writes down when it had arrived at each.
std::vector<StillStage> playLevels(const LightOptions& options, Lamp& lamp) {
    std::vector<StillStage> stages;
    double now = 0.0;
    for (std::size_t i = 0; i < options.levels.size(); ++i) {
        const bool last = i + 1 == options.levels.size();
        if (i > 0 && !(last && options.mistake == LightMistake::StuckLight)) {
            lamp.changeTo(options.levels[i], now);
        }
        if (last && options.mistake == LightMistake::Unstable) {
            lamp.setFlicker(kStrongFlicker / options.gain, now);
        }
        const double arrived = i > 0 ? now + options.rampSeconds : now;
        if (last && options.mistake == LightMistake::CutShort) {
            stages.push_back({now * 1000.0, arrived * 1000.0});
            break;
        }
        now = arrived + options.holdSeconds;
        stages.push_back({arrived * 1000.0, now * 1000.0});
    }
    return stages;
}

std::vector<Row> sample(const Lamp& lamp, bool secondary, double end, const LightOptions& options) {
    const std::string name = displayName(SensorKind::AmbientLight, secondary);
    Random random(options.seed, "noise of " + name);
    const double phase = secondary ? 0.3 / options.rateHz : 0.0;
    SampleClock clock(options.rateHz, options.jitterMs / 1000.0, phase, options.seed,
                      "clock of " + name);
    std::vector<Row> rows;
    for (; clock.next() <= end; clock.step()) {
        const double seen = lamp.luxAt(clock.next()) * gainOf(secondary, options) +
                            options.noiseLux * random.normal();
        const bool dark = options.mistake == LightMistake::Dark;
        rows.push_back({std::round(clock.next() * 1000.0), {dark ? 0.0 : std::max(seen, 0.0)}});
    }
    return rows;
}

}  // namespace

LightRecording recordLight(const LightOptions& options) {
    LightRecording recording;
    recording.options = options;
    Lamp lamp(options.levels[0], options.rampSeconds);
    lamp.setFlicker(options.flickerLux, 0.0);
    recording.stages = playLevels(options, lamp);
    const double end = recording.stages.back().end / 1000.0;
    for (const bool secondary : {false, true}) {
        if (isPresent(secondary, options)) {
            recording.rows[displayName(SensorKind::AmbientLight, secondary)] =
                sample(lamp, secondary, end, options);
        }
    }
    return recording;
}

std::string LightRecording::dumpText(const std::string& sensorName) const {
    const auto found = rows.find(sensorName);
    if (found == rows.end()) {
        return {};
    }
    const bool secondary = sensorName == displayName(SensorKind::AmbientLight, true);
    return simulator::dumpText(
        {SensorKind::AmbientLight, secondary, options.formFactor, options.hinge}, found->second);
}

std::string LightRecording::settingsText() const {
    std::string values;
    for (const int level : options.levels) {
        values += (values.empty() ? "" : ",") + std::to_string(level);
    }
    return keyValueLine("values", values) +
           keyValueLine("delay_time", std::to_string(options.delaySeconds));
}

std::string LightRecording::truthText() const {
    std::string text = keyValueLine("flow", "als") +
                       keyValueLine("seed", std::to_string(options.seed)) +
                       keyValueLine("mistake", lightMistakeName(options.mistake));
    for (const auto& [name, samples] : rows) {
        const double gain = gainOf(name == displayName(SensorKind::AmbientLight, true), options);
        text += keyValueLine(name + ".gain", numberText(gain)) +
                keyValueLine(name + ".multiplier", numberText(1.0 / gain));
    }
    return text + stagesText(stages);
}

std::string LightRecording::writeTo(const std::string& folder, bool crlf) const {
    OutputFolder output(folder, crlf);
    for (const auto& [name, samples] : rows) {
        output.write("dataDump" + name + ".csv", dumpText(name));
    }
    output.write("als.txt", settingsText());
    output.write("truth.txt", truthText());
    return output.failure();
}

}  // namespace tavocal::simulator
