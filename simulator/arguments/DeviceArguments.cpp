#include "simulator/arguments/DeviceArguments.h"

#include <array>
#include <limits>
#include <string_view>

namespace tavocal::simulator {

namespace {

SensorKind sensorOf(Arguments& arguments) {
    const std::string letter = arguments.text();
    return known(letter.size() == 1 ? kindFromLetter(letter[0]) : std::nullopt, "sensor", letter);
}

void setSensors(RecordingOptions& options, Arguments& arguments) {
    const std::string letters = arguments.text();
    if (letters.empty()) {
        throw ArgumentError("The sensors must be some of A, G and M");
    }
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if (!kindFromLetter(letters[i]) || letters.find(letters[i], i + 1) != std::string::npos) {
            throw ArgumentError("The sensors must be some of A, G and M: " + letters);
        }
    }
    options.sensors = letters;
}

const std::array<Option<RecordingOptions>, 23> kOptions = {{
    {"--seed", "N", "what all chance depends on, default 1",
     [](RecordingOptions& r, Arguments& a) {
         r.seed =
             static_cast<std::uint64_t>(a.wholeNumber(0, std::numeric_limits<long long>::max()));
     }},
    {"--sensors", "LETTERS", "some of A, G and M", setSensors},
    {"--secondary", "", "a second sensor of each kind",
     [](RecordingOptions& r, Arguments&) { r.secondary = true; }},
    {"--form-factor", "TEXT", "default 2IN1",
     [](RecordingOptions& r, Arguments& a) { r.formFactor = a.line(); }},
    {"--hinge", "TEXT", "default BOTTOM",
     [](RecordingOptions& r, Arguments& a) { r.hinge = a.line(); }},
    {"--jitter", "MS", "of the times between samples, default 0.2",
     [](RecordingOptions& r, Arguments& a) { r.jitterMs = a.number(0.0, 100.0); }},
    {"--noise-acc", "G", "default 0.0015",
     [](RecordingOptions& r, Arguments& a) { r.noiseG = a.number(0.0, 100.0); }},
    {"--noise-gyro", "DPS", "default 0.06",
     [](RecordingOptions& r, Arguments& a) { r.noiseDps = a.number(0.0, 1e4); }},
    {"--noise-mag", "MG", "default 2",
     [](RecordingOptions& r, Arguments& a) { r.noiseMg = a.number(0.0, 1e5); }},
    {"--field", "MG", "strength of the magnetic field, default 480",
     [](RecordingOptions& r, Arguments& a) { r.fieldMg = a.number(0.0, 1e5); }},
    {"--dip", "DEG", "how far the field points down, default 60",
     [](RecordingOptions& r, Arguments& a) { r.dipDegrees = a.number(-90.0, 90.0); }},
    {"--room", "NAME", "clean, usual (for magtest) or magnetic, default clean",
     [](RecordingOptions& r, Arguments& a) {
         const std::string name = a.text();
         r.room = known(roomFromName(name), "room", name);
     }},
    {"--hard-iron", "MG", "length of the magnetometer's offset, default 300",
     [](RecordingOptions& r, Arguments& a) { r.hardIronMg = a.number(0.0, 1e5); }},
    {"--perfect", "", "all sensors are calibrated",
     [](RecordingOptions& r, Arguments&) { r.perfect = true; }},
    {"--no-cross-axis", "", "scales are diagonal",
     [](RecordingOptions& r, Arguments&) { r.crossAxis = false; }},
    {"--left-handed", "", "the sensors' axes form left-handed frames",
     [](RecordingOptions& r, Arguments&) { r.leftHanded = true; }},
    {"--turn", "S", "time of a full turn, default 6",
     [](RecordingOptions& r, Arguments& a) { r.turnSeconds = a.number(0.1, 120.0); }},
    {"--tilt", "S", "time of a quarter turn, default 1.8",
     [](RecordingOptions& r, Arguments& a) { r.tiltSeconds = a.number(0.1, 120.0); }},
    {"--walk", "S", "time of the walk of magtest, default 12",
     [](RecordingOptions& r, Arguments& a) { r.walkSeconds = a.number(0.1, 120.0); }},
    {"--tremor", "DPS", "how much the hand trembles, default 0.05",
     [](RecordingOptions& r, Arguments& a) { r.hand.tremorDps = a.number(0.0, 100.0); }},
    {"--placement", "DEG", "how badly positions are met, default 0",
     [](RecordingOptions& r, Arguments& a) { r.placementDegrees = a.number(0.0, 45.0); }},
    {"--mistake-stage", "N", "the stage in which the operator makes it, from 1",
     [](RecordingOptions& r, Arguments& a) {
         r.mistakeStep = static_cast<std::size_t>(a.wholeNumber(1, 7) - 1);
     }},
    {"--faulty-sensor", "LETTER", "the sensor that is faulty or falls silent",
     [](RecordingOptions& r, Arguments& a) { r.faultSensor = r.silentSensor = sensorOf(a); }},

}};

}  // namespace

std::span<const Option<RecordingOptions>> deviceOptionTable() {
    return kOptions;
}

void checkMistake(const OperatorOptions& options) {
    const std::string flow(flowName(options.flow));
    if (!usualStep(options.mistake, options.flow)) {
        throw ArgumentError("The flow " + flow + " has no stage for the mistake " +
                            std::string(mistakeName(options.mistake)));
    }
    if (options.mistakeStep.value_or(0) >= flowSteps(options.flow).size()) {
        throw ArgumentError("The flow " + flow + " has no stage " +
                            std::to_string(*options.mistakeStep + 1));
    }
}

}  // namespace tavocal::simulator
