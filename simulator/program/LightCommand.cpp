#include "simulator/program/LightCommand.h"

#include <algorithm>
#include <array>
#include <limits>

#include "simulator/arguments/OptionTable.h"
#include "simulator/base/OutputFolder.h"
#include "simulator/recording/LightRecording.h"

namespace tavocal::simulator {

namespace {

// What `tavosim record --flow als` was asked to do.
struct LightRequest {
    LightOptions options;
    std::string folder;
    bool crlf = false;
};

constexpr std::string_view kFlow = "als";

void setMistake(LightRequest& request, Arguments& arguments) {
    const std::string name = arguments.text();
    const std::optional<LightMistake> mistake = lightMistakeFromName(name);
    if (!mistake) {
        throw ArgumentError("There is no mistake " + name + " with light");
    }
    request.options.mistake = *mistake;
}

const std::array<Option<LightRequest>, 16> kOptions = {{
    {"--flow", "als", "the ambient light sensor",
     [](LightRequest&, Arguments& a) {
         if (a.text() != kFlow) {
             throw ArgumentError("Only one flow can be recorded at a time");
         }
     }},
    {"--seed", "N", "what all chance depends on, default 1",
     [](LightRequest& r, Arguments& a) {
         r.options.seed =
             static_cast<std::uint64_t>(a.wholeNumber(0, std::numeric_limits<long long>::max()));
     }},
    {"--out", "DIR", "the folder of the files",
     [](LightRequest& r, Arguments& a) { r.folder = a.text(); }},
    {"--crlf", "", "lines end in CR LF", [](LightRequest& r, Arguments&) { r.crlf = true; }},
    {"--levels", "LIST", "lux, default 500,1000,2000",
     [](LightRequest& r, Arguments& a) { r.options.levels = a.wholeNumbers(0, 1000000); }},
    {"--gain", "N", "what the sensor reads of each lux, default 0.5",
     [](LightRequest& r, Arguments& a) { r.options.gain = a.number(1e-6, 1e6); }},
    {"--secondary", "", "a second sensor",
     [](LightRequest& r, Arguments&) { r.options.secondary = true; }},
    {"--gain-2", "N", "of the second sensor, default 0.8",
     [](LightRequest& r, Arguments& a) { r.options.secondaryGain = a.number(1e-6, 1e6); }},
    {"--form-factor", "TEXT", "default 2IN1",
     [](LightRequest& r, Arguments& a) { r.options.formFactor = a.line(); }},
    {"--hinge", "TEXT", "default BOTTOM",
     [](LightRequest& r, Arguments& a) { r.options.hinge = a.line(); }},
    {"--rate", "HZ", "default 50",
     [](LightRequest& r, Arguments& a) { r.options.rateHz = a.number(1.0, 1000.0); }},
    {"--noise-light", "LUX", "of a reading, default 0.15",
     [](LightRequest& r, Arguments& a) { r.options.noiseLux = a.number(0.0, 1e6); }},
    {"--flicker", "LUX", "swing of the light, default 0.4",
     [](LightRequest& r, Arguments& a) { r.options.flickerLux = a.number(0.0, 1e6); }},
    {"--hold", "S", "time at each level, default 4",
     [](LightRequest& r, Arguments& a) { r.options.holdSeconds = a.number(0.1, 120.0); }},
    {"--ramp", "S", "time from level to level, default 0.8",
     [](LightRequest& r, Arguments& a) { r.options.rampSeconds = a.number(0.01, 120.0); }},
    {"--mistake", "NAME", "stuck-light, unstable, cut-short or dark", setMistake},
}};

LightRequest parseLightArguments(const std::vector<std::string>& arguments) {
    LightRequest request;
    applyOptions<LightRequest>(kOptions, arguments, request);
    if (request.folder.empty()) {
        throw ArgumentError("The option --out is missing");
    }
    return request;
}

}  // namespace

bool asksForLight(const std::vector<std::string>& arguments) {
    const std::array<std::string, 2> words = {"--flow", std::string(kFlow)};
    return std::search(arguments.begin(), arguments.end(), words.begin(), words.end()) !=
           arguments.end();
}

void runLightCommand(const std::vector<std::string>& arguments) {
    const LightRequest request = parseLightArguments(arguments);
    const std::string reason = recordLight(request.options).writeTo(request.folder, request.crlf);
    if (!reason.empty()) {
        throw OutputError(reason);
    }
}

std::string lightUsage() {
    return "tavosim record --flow als --out DIR [options]\n" + optionsUsage<LightRequest>(kOptions);
}

}  // namespace tavocal::simulator
