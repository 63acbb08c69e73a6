#include "simulator/RecordCommand.h"

#include <array>
#include <cstdio>
#include <limits>
#include <string_view>

#include "simulator/Arguments.h"

namespace tavocal::simulator {

namespace {

struct Option {
    std::string_view name;
    std::string_view value;  // what the usage text calls it; empty for an option without one
    std::string_view meaning;
    void (*apply)(RecordRequest& request, Arguments& arguments);
};

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
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if (!kindFromLetter(letters[i]) || letters.find(letters[i], i + 1) != std::string::npos) {
            throw ArgumentError("The sensors must be some of A, G and M: " + letters);
        }
    }
    request.options.sensors = letters;
}

// One line of a dump's head.
std::string headText(Arguments& arguments) {
    const std::string text = arguments.text();
    if (text.find_first_of("\r\n") != std::string::npos) {
        throw ArgumentError("A form factor and a hinge are one line");
    }
    return text;
}

const std::array<Option, 28> kOptions = {{
    {"--flow", "NAME", "full, accelerometer, foursteps, magaccuracy or minimal", setFlow},
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
     [](RecordRequest& r, Arguments& a) { r.options.formFactor = headText(a); }},
    {"--hinge", "TEXT", "default BOTTOM",
     [](RecordRequest& r, Arguments& a) { r.options.hinge = headText(a); }},
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

const Option& optionOf(const std::string& name) {
    for (const Option& option : kOptions) {
        if (option.name == name) {
            return option;
        }
    }
    throw ArgumentError("Unknown option " + name);
}

// What no option shows by itself.
void checkTogether(const RecordRequest& request, bool flowGiven) {
    if (!flowGiven) {
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
    bool flowGiven = false;
    Arguments walk(arguments);
    for (std::string name; walk.nextOption(name);) {
        optionOf(name).apply(request, walk);
        flowGiven = flowGiven || name == "--flow";
    }
    checkTogether(request, flowGiven);
    return request;
}

int runRecordCommand(const std::vector<std::string>& arguments) {
    const RecordRequest request = parseRecordArguments(arguments);
    const std::string reason = record(request.options).writeTo(request.folder, request.crlf);
    if (!reason.empty()) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return 1;
    }
    return 0;
}

std::string recordUsage() {
    std::string text = "tavosim record --flow NAME --out DIR [options]\n";
    for (const Option& option : kOptions) {
        std::string left = "  " + std::string(option.name) + " " + std::string(option.value);
        left.resize(27, ' ');
        text += left + std::string(option.meaning) + "\n";
    }
    text +=
        "Mistakes of the operator:\n  skipped-turn, half-turn, wrong-turn, wrong-position, "
        "moved-device, cut-short, magnet,\n  silent-sensor\n";
    text +=
        "Faults of the device:\n  noisy, spiky, wrong-mounting, gyro-scale-10, elliptic-mag, "
        "heading-30\n";
    return text;
}

}  // namespace tavocal::simulator
