#include "simulator/live/LiveArguments.h"

#include <algorithm>
#include <array>

#include "platform/Files.h"
#include "simulator/arguments/DeviceArguments.h"
#include "simulator/base/Names.h"
#include "simulator/base/OutputFolder.h"
#include "simulator/live/DeviceFile.h"

namespace tavocal::simulator {

namespace {

constexpr std::string_view kDeviceOption = "--device";
constexpr std::string_view kBlocksOption = "--blocks";
constexpr std::string_view kToolFollows = "--";
constexpr std::size_t kLongestFile = 1 << 20;

void setDevice(LiveOptions& options, Arguments& arguments) {
    options.deviceFile = arguments.text();
}

std::optional<FactoryBlocks> blocksFromName(std::string_view name) {
    constexpr std::array<std::string_view, 4> kNames = {"neutral", "exact", "other", "missing"};
    return valueNamed<FactoryBlocks>(kNames, name);
}

// Of the firmware, or of a sensor: nobody who tries one wants to know which.
void setFault(LiveOptions& options, Arguments& arguments) {
    const std::string name = arguments.text();
    if (const auto fault = firmwareFaultFromName(name)) {
        options.fault = *fault;
    } else {
        options.motion.fault = known(faultFromName(name), "fault", name);
    }
}

struct LiveMistake {
    std::string_view name;
    void (*apply)(LiveOptions& options);
};

// Those that only a run with keys has.
constexpr std::array<LiveMistake, 4> kLiveMistakes = {{
    {"early-key", [](LiveOptions& o) { o.pressesEarly = true; }},
    {"same-axis-twice", [](LiveOptions& o) { o.turns = "XXZ"; }},
    {"no-walk",
     [](LiveOptions& o) {
         o.motion.mistake = Mistake::SkippedTurn;
         o.motion.mistakeStep = 3;
     }},
    {"turned-walk",
     [](LiveOptions& o) {
         o.motion.mistake = Mistake::MovedDevice;
         o.motion.mistakeStep = 3;
     }},
}};

void setMistake(LiveOptions& options, Arguments& arguments) {
    const std::string name = arguments.text();
    for (const LiveMistake& mistake : kLiveMistakes) {
        if (mistake.name == name) {
            mistake.apply(options);
            return;
        }
    }
    // "none" and "cut-short" are in both vocabularies.
    const auto lightMistake = lightMistakeFromName(name);
    const auto mistake = mistakeFromName(name);
    options.lightMistake = lightMistake.value_or(LightMistake::None);
    options.light.dark = options.lightMistake == LightMistake::Dark;
    if (!lightMistake || mistake) {
        options.motion.mistake = known(mistake, "mistake", name);
    }
}

void setTurns(LiveOptions& options, Arguments& arguments) {
    options.turns = arguments.text();
    if (options.turns.size() != 3 || options.turns.find_first_not_of("XYZ") != std::string::npos) {
        throw ArgumentError("The turns must be three of X, Y and Z: " + options.turns);
    }
}

const std::array<Option<LiveOptions>, 14> kOptions = {{
    {kDeviceOption, "FILE", "keeps the device between runs", setDevice},
    {"--speed", "X", "simulated seconds in a real one",
     [](LiveOptions& o, Arguments& a) { o.speed = a.number(0.1, 1000.0); }},
    {kBlocksOption, "NAME", "what a new device holds: neutral, exact, other or missing",
     [](LiveOptions& o, Arguments& a) {
         const std::string name = a.text();
         o.blocks = known(blocksFromName(name), "kind of blocks", name);
     }},
    {"--fault", "NAME", "what is wrong with the device; see below", setFault},
    {"--fault-after", "S", "seconds of sampling before it shows, default 3",
     [](LiveOptions& o, Arguments& a) { o.faultAfter = a.number(0.0, 1e4); }},
    {"--mistake", "NAME", "what the operator gets wrong; see below", setMistake},
    {"--turns", "LETTERS", "axes of the three turns of -MagTest, default XYZ", setTurns},
    {"--levels", "LIST", "lux that the operator sets, default 500,1000,2000",
     [](LiveOptions& o, Arguments& a) { o.levels = a.wholeNumbers(0, 1000000); }},
    {"--gain", "N", "what the light sensor reads of each lux, default 0.5",
     [](LiveOptions& o, Arguments& a) { o.light.gain = a.number(1e-6, 1e6); }},
    {"--gain-2", "N", "of the second light sensor, default 0.8",
     [](LiveOptions& o, Arguments& a) { o.light.secondaryGain = a.number(1e-6, 1e6); }},
    {"--noise-light", "LUX", "of a reading, default 0.15",
     [](LiveOptions& o, Arguments& a) { o.light.noiseLux = a.number(0.0, 1e6); }},
    {"--flicker", "LUX", "swing of the light, default 0.4",
     [](LiveOptions& o, Arguments& a) { o.light.flickerLux = a.number(0.0, 1e6); }},
    {"--ramp", "S", "time from light level to light level, default 0.8",
     [](LiveOptions& o, Arguments& a) { o.light.rampSeconds = a.number(0.01, 120.0); }},
    {"--flow", "NAME", "of `serve`, default full",
     [](LiveOptions& o, Arguments& a) {
         const std::string name = a.text();
         o.motion.flow = known(flowFromName(name), "flow", name);
     }},
}};

std::string deviceFileOf(const std::vector<std::string>& arguments) {
    const auto found = std::find(arguments.begin(), arguments.end(), kDeviceOption);
    return found == arguments.end() || found + 1 == arguments.end() ? "" : *(found + 1);
}

// False if there is no such file yet.
bool loadDevice(const std::string& path, LiveRequest& request) {
    std::string text;
    if (path.empty() || !platform::fileExists(path)) {
        return false;
    }
    if (!platform::readFile(path, text) || text.size() > kLongestFile) {
        throw OutputError("Can't read " + path);
    }
    readDeviceFile(text, request.options, request.flash);
    return true;
}

void checkSameDevice(const LiveOptions& options, const std::string& identity,
                     const std::vector<std::string>& arguments) {
    if (deviceIdentityText(options) != identity ||
        std::find(arguments.begin(), arguments.end(), kBlocksOption) != arguments.end()) {
        throw ArgumentError("The options want another device than the one in " +
                            options.deviceFile);
    }
}

}  // namespace

LiveRequest parseLiveArguments(const std::vector<std::string>& arguments, double usualSpeed) {
    LiveRequest request;
    LiveOptions& options = request.options;
    options.speed = usualSpeed;
    const auto tool = std::find(arguments.begin(), arguments.end(), kToolFollows);
    const std::vector<std::string> own(arguments.begin(), tool);
    if (tool != arguments.end()) {
        request.tool.assign(tool + 1, arguments.end());
    }
    const bool loaded = loadDevice(deviceFileOf(own), request);
    const std::string identity = deviceIdentityText(options);
    applyOptions<LiveOptions, RecordingOptions>(kOptions, options, deviceOptionTable(),
                                                options.motion, own);
    if (loaded) {
        checkSameDevice(options, identity, own);
    } else {
        request.flash = factoryFlash(options.motion, options.blocks);
    }
    return request;
}

std::string liveOptionsUsage() {
    return optionsUsage<LiveOptions>(kOptions) + optionsUsage(deviceOptionTable()) +
           "Mistakes of the operator:\n"
           "  skipped-turn, half-turn, wrong-turn, wrong-position, moved-device, cut-short,\n"
           "  magnet, silent-sensor; stuck-light, unstable, dark; early-key, same-axis-twice,\n"
           "  no-walk, turned-walk\n"
           "Faults of a sensor:\n"
           "  noisy, spiky, wrong-mounting, gyro-scale-10, elliptic-mag, heading-30\n"
           "Faults of the firmware:\n" +
           firmwareFaultUsage();
}

}  // namespace tavocal::simulator
