#include "simulator/RecordCommand.h"

#include <array>
#include <limits>
#include <string_view>

#include "simulator/OptionTable.h"
#include "simulator/OutputFolder.h"

namespace tavocal::simulator {

namespace {

template <typename Value>
Value known(const std::optional<Value>& value, std::string_view what, const std::string& text) {
    if (!value) {
        throw ArgumentError("There is no " + std::string(what) + " " + text);
    }
    return *value;
}

void setFlow(RecordRequest& request, Arguments& arguments) {
    const std::string name = arguments.text();
    request.options.flow = known(flowFromName(name), "flow", name);
    request.flowGiven = true;
}

// A mistake of the operator or a fault of the device: nobody who tries one wants to know which.
void setMistake(RecordRequest& request, Arguments& arguments) {
    const std::string name = arguments.text();
    const std::optional<Fault> fault = faultFromName(name);
    if (fault && *fault != Fault::None) {
        request.options.fault = *fault;
    } else {
        request.options.mistake = known(mistakeFromName(name), "mistake", name);
    }
}

SensorKind sensorOf(Arguments& arguments) {
    const std::string letter = arguments.text();
    return known(letter.size() == 1 ? kindFromLetter(letter[0]) : std::nullopt, "sensor", letter);
}

void setSensors(RecordRequest& request, Arguments& arguments) {
    const std::string letters = arguments.text();
    if (letters.empty()) {
        throw ArgumentError("The sensors must be some of A, G and M");
    }
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if (!kindFromLetter(letters[i]) || letters.find(letters[i], i + 1) != std::string::npos) {
            throw ArgumentError("The sensors must be some of A, G and M: " + letters);
        }
    }
    request.options.sensors = letters;
}

const std::array<Option<RecordRequest>, 30> kOptions = {{
    {"--flow", "NAME",
     "full, accelerometer, foursteps, magaccuracy, minimal, magtest; als: see below", setFlow},
    {"--seed", "N", "what all chance depends on, default 1",
     [](RecordRequest& r, Arguments& a) {
         r.options.seed =
             static_cast<std::uint64_t>(a.wholeNumber(0, std::numeric_limits<long long>::max()));
     }},
    {"--out", "DIR", "the folder of the files",
     [](RecordRequest& r, Arguments& a) { r.folder = a.text(); }},
    {"--crlf", "", "lines end in CR LF", [](RecordRequest& r, Arguments&) { r.crlf = true; }},
    {"--sensors", "LETTERS", "some of A, G and M", setSensors},
    {"--secondary", "", "a second sensor of each kind",
     [](RecordRequest& r, Arguments&) { r.options.secondary = true; }},
    {"--form-factor", "TEXT", "default 2IN1",
     [](RecordRequest& r, Arguments& a) { r.options.formFactor = a.line(); }},
    {"--hinge", "TEXT", "default BOTTOM",
     [](RecordRequest& r, Arguments& a) { r.options.hinge = a.line(); }},
    {"--rate", "HZ", "of each sensor, default 100",
     [](RecordRequest& r, Arguments& a) { r.options.rateHz = a.number(1.0, 1000.0); }},
    {"--jitter", "MS", "of the times between samples, default 0.2",
     [](RecordRequest& r, Arguments& a) { r.options.jitterMs = a.number(0.0, 100.0); }},
    {"--microseconds", "", "times with three digits behind the point",
     [](RecordRequest& r, Arguments&) { r.options.wholeMilliseconds = false; }},
    {"--noise-acc", "G", "default 0.0015",
     [](RecordRequest& r, Arguments& a) { r.options.noiseG = a.number(0.0, 100.0); }},
    {"--noise-gyro", "DPS", "default 0.06",
     [](RecordRequest& r, Arguments& a) { r.options.noiseDps = a.number(0.0, 1e4); }},
    {"--noise-mag", "MG", "default 2",
     [](RecordRequest& r, Arguments& a) { r.options.noiseMg = a.number(0.0, 1e5); }},
    {"--field", "MG", "strength of the magnetic field, default 480",
     [](RecordRequest& r, Arguments& a) { r.options.fieldMg = a.number(0.0, 1e5); }},
    {"--dip", "DEG", "how far the field points down, default 60",
     [](RecordRequest& r, Arguments& a) { r.options.dipDegrees = a.number(-90.0, 90.0); }},
    {"--room", "NAME", "clean, usual (for magtest) or magnetic, default clean",
     [](RecordRequest& r, Arguments& a) {
         const std::string name = a.text();
         r.options.room = known(roomFromName(name), "room", name);
     }},
    {"--hard-iron", "MG", "length of the magnetometer's offset, default 300",
     [](RecordRequest& r, Arguments& a) { r.options.hardIronMg = a.number(0.0, 1e5); }},
    {"--perfect", "", "all sensors are calibrated",
     [](RecordRequest& r, Arguments&) { r.options.perfect = true; }},
    {"--no-cross-axis", "", "scales are diagonal",
     [](RecordRequest& r, Arguments&) { r.options.crossAxis = false; }},
    {"--left-handed", "", "the sensors' axes form left-handed frames",
     [](RecordRequest& r, Arguments&) { r.options.leftHanded = true; }},
    {"--hold", "S", "time in each position, default 2.2",
     [](RecordRequest& r, Arguments& a) { r.options.holdSeconds = a.number(0.1, 120.0); }},
    {"--turn", "S", "time of a full turn, default 6",
     [](RecordRequest& r, Arguments& a) { r.options.turnSeconds = a.number(0.1, 120.0); }},
    {"--tilt", "S", "time of a quarter turn, default 1.8",
     [](RecordRequest& r, Arguments& a) { r.options.tiltSeconds = a.number(0.1, 120.0); }},
    {"--walk", "S", "time of the walk of magtest, default 12",
     [](RecordRequest& r, Arguments& a) { r.options.walkSeconds = a.number(0.1, 120.0); }},
    {"--tremor", "DPS", "how much the hand trembles, default 0.05",
     [](RecordRequest& r, Arguments& a) { r.options.hand.tremorDps = a.number(0.0, 100.0); }},
    {"--placement", "DEG", "how badly positions are met, default 0",
     [](RecordRequest& r, Arguments& a) { r.options.placementDegrees = a.number(0.0, 45.0); }},
    {"--mistake", "NAME", "what goes wrong; see below", setMistake},
    {"--mistake-stage", "N", "the stage in which the operator makes it, from 1",
     [](RecordRequest& r, Arguments& a) {
         r.options.mistakeStep = static_cast<std::size_t>(a.wholeNumber(1, 7) - 1);
     }},
    {"--faulty-sensor", "LETTER", "the sensor that is faulty or falls silent",
     [](RecordRequest& r, Arguments& a) {
         r.options.faultSensor = r.options.silentSensor = sensorOf(a);
     }},
}};

// What no option shows by itself.
void checkTogether(const RecordRequest& request) {
    if (!request.flowGiven) {
        throw ArgumentError("The option --flow is missing");
    }
    if (request.folder.empty()) {
        throw ArgumentError("The option --out is missing");
    }
    const RecordingOptions& options = request.options;
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

}  // namespace

RecordRequest parseRecordArguments(const std::vector<std::string>& arguments) {
    RecordRequest request;
    applyOptions<RecordRequest>(kOptions, arguments, request);
    checkTogether(request);
    return request;
}

void runRecordCommand(const std::vector<std::string>& arguments) {
    const RecordRequest request = parseRecordArguments(arguments);
    const std::string reason = record(request.options).writeTo(request.folder, request.crlf);
    if (!reason.empty()) {
        throw OutputError(reason);
    }
}

std::string recordUsage() {
    return "tavosim record --flow NAME --out DIR [options]\n" +
           optionsUsage<RecordRequest>(kOptions) +
           "Mistakes of the operator:\n"
           "  skipped-turn, half-turn, wrong-turn, wrong-position, moved-device, cut-short,\n"
           "  magnet, silent-sensor\n"
           "Faults of the device:\n"
           "  noisy, spiky, wrong-mounting, gyro-scale-10, elliptic-mag, heading-30\n";
}

}  // namespace tavocal::simulator
