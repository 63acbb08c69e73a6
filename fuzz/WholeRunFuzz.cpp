#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "app/CalibrationManager.h"
#include "commandline/CmdLine.h"
#include "fuzz/Attempt.h"
#include "fuzz/InputBytes.h"
#include "fuzz/ScratchFolder.h"
#include "simulator/recording/LightRecording.h"
#include "simulator/recording/Recording.h"

namespace {

namespace simulator = tavocal::simulator;
using simulator::Flow;
using Rows = std::map<std::string, std::vector<simulator::Row>>;

// A recording and the run that is made of it.
struct Case {
    Flow flow;
    bool perfect;
    std::vector<const char*> arguments;
};

const std::array<Case, 6> kCases = {{
    {Flow::Full, false, {"-CalibrateOffline", "AGM"}},
    {Flow::FourSteps, false, {"-CalibrateOffline", "A", "-FourSteps"}},
    {Flow::FourSteps, true, {"-TestCalibration", "AG", "-FourSteps"}},
    {Flow::Minimal, true, {"-TestCalibration", "A", "-Minimal"}},
    {Flow::MagAccuracy, true, {"-TestCalibration", "M", "-MagAccuracyTest"}},
    {Flow::AccelerometerOnly, false, {"-CalibrateOffline", "A"}},
}};
const std::vector<const char*> kLightArguments = {"-CalibrateOffline", "ALS", "-Auto",
                                                  "dumps/als.txt"};

simulator::Recording record(const Case& run) {
    simulator::RecordingOptions options;
    options.flow = run.flow;
    options.perfect = run.perfect;
    options.rateHz = 50.0;
    options.turnSeconds = 3.0;
    return simulator::record(options);
}

// One change of the recording: a number of a row, a row that is missing, or a clock that jumps.
void patch(tavocal::fuzz::InputBytes& input, Rows& rows) {
    auto& sensor = std::next(rows.begin(), input.byte() % static_cast<int>(rows.size()))->second;
    const std::size_t index = input.take<std::uint16_t>() % (sensor.size() + 1);
    const std::uint8_t field = input.byte();
    const auto value = input.take<double>();
    if (index == sensor.size()) {
        return;
    }
    const auto row = sensor.begin() + static_cast<std::ptrdiff_t>(index);
    if (field == 0) {
        row->time = value;
    } else if (field <= row->values.size()) {
        row->values[field - std::size_t{1}] = value;
    } else if (field == 0xFF) {
        sensor.erase(row);
    } else if (field == 0xFE) {
        sensor.erase(row, sensor.end());
    } else {
        std::for_each(row, sensor.end(), [value](simulator::Row& late) { late.time += value; });
    }
}

template <typename Recording>
void writePatched(Recording recording, tavocal::fuzz::InputBytes& input) {
    while (!input.empty()) {
        patch(input, recording.rows);
    }
    if (!recording.writeTo("dumps").empty()) {
        std::abort();
    }
}

void replay(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "tavocal");
    arguments.insert(arguments.end(), {"-UseRawData", "dumps", "-ExportAllFiles", "out"});
    tavocal::CmdLine cmdLine;
    cmdLine.parse(static_cast<int>(arguments.size()), const_cast<char**>(arguments.data()));
    tavocal::CalibrationManager manager(cmdLine);
    tavocal::fuzz::attempt([&] { manager.start(); });
    for (const tavocal::Judgement& judgement : manager.judgements()) {
        // What isn't a number is neither within its limits nor beyond them.
        const bool within =
            judgement.value >= judgement.lowest && judgement.value <= judgement.highest;
        if (!std::isnan(judgement.value) && judgement.passed != within) {
            std::abort();
        }
    }
}

}  // namespace

// The first byte picks a recording, the rest patches it: sensor, row (16 bits), field, and a value
// of 8 bytes. The run ends with its result or with a failure that the operator is told, and has
// judged by its own limits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const tavocal::fuzz::ScratchFolder folder;
    static const simulator::LightRecording light = simulator::recordLight({});
    static const auto recordings = [] {
        std::vector<simulator::Recording> all;
        std::transform(kCases.begin(), kCases.end(), std::back_inserter(all), record);
        return all;
    }();
    folder.enter();
    tavocal::fuzz::InputBytes input(data, size);
    const std::size_t choice = input.byte() % (kCases.size() + 1);
    if (choice == kCases.size()) {
        writePatched(light, input);
        replay(kLightArguments);
    } else {
        writePatched(recordings[choice], input);
        replay(kCases[choice].arguments);
    }
    return 0;
}
