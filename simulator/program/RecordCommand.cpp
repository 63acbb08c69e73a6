#include "simulator/program/RecordCommand.h"

#include <array>
#include <string_view>

#include "simulator/arguments/DeviceArguments.h"
#include "simulator/base/OutputFolder.h"
#include "simulator/recording/Recording.h"

namespace tavocal::simulator {

namespace {

// What `tavosim record` was asked to do with a flow of the motion sensors.
struct RecordRequest {
    RecordingOptions options;
    bool flowGiven = false;
    std::string folder;
    bool crlf = false;
};

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

const std::array<Option<RecordRequest>, 7> kOptions = {{
    {"--flow", "NAME",
     "full, accelerometer, foursteps, magaccuracy, minimal, magtest; als: see below", setFlow},
    {"--out", "DIR", "the folder of the files",
     [](RecordRequest& r, Arguments& a) { r.folder = a.text(); }},
    {"--crlf", "", "lines end in CR LF", [](RecordRequest& r, Arguments&) { r.crlf = true; }},
    {"--rate", "HZ", "of each sensor, default 100",
     [](RecordRequest& r, Arguments& a) { r.options.rateHz = a.number(1.0, 1000.0); }},
    {"--microseconds", "", "times with three digits behind the point",
     [](RecordRequest& r, Arguments&) { r.options.wholeMilliseconds = false; }},
    {"--hold", "S", "time in each position, default 2.2",
     [](RecordRequest& r, Arguments& a) { r.options.holdSeconds = a.number(0.1, 120.0); }},
    {"--mistake", "NAME", "what goes wrong; see below", setMistake},
}};

// What no option shows by itself.
void checkTogether(const RecordRequest& request) {
    if (!request.flowGiven) {
        throw ArgumentError("The option --flow is missing");
    }
    if (request.folder.empty()) {
        throw ArgumentError("The option --out is missing");
    }
    checkMistake(request.options);
}

RecordRequest parseRecordArguments(const std::vector<std::string>& arguments) {
    RecordRequest request;
    applyOptions<RecordRequest, RecordingOptions>(kOptions, request, deviceOptionTable(),
                                                  request.options, arguments);
    checkTogether(request);
    return request;
}

}  // namespace

void runRecordCommand(const std::vector<std::string>& arguments) {
    const RecordRequest request = parseRecordArguments(arguments);
    const std::string reason = record(request.options).writeTo(request.folder, request.crlf);
    if (!reason.empty()) {
        throw OutputError(reason);
    }
}

std::string recordUsage() {
    return "tavosim record --flow NAME --out DIR [options]\n" +
           optionsUsage<RecordRequest>(kOptions) + optionsUsage(deviceOptionTable()) +
           "Mistakes of the operator:\n"
           "  skipped-turn, half-turn, wrong-turn, wrong-position, moved-device, cut-short,\n"
           "  magnet, silent-sensor\n"
           "Faults of the device:\n"
           "  noisy, spiky, wrong-mounting, gyro-scale-10, elliptic-mag, heading-30\n";
}

}  // namespace tavocal::simulator
