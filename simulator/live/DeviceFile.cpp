#include "simulator/live/DeviceFile.h"

#include <array>
#include <charconv>

#include "base/Failures.h"
#include "base/Text.h"
#include "base/TextToNumber.h"
#include "simulator/base/OutputFolder.h"
#include "simulator/device/SensorFactory.h"
#include "simulator/hub/CalibrationBlocks.h"
#include "simulator/recording/KeyValueText.h"
#include "simulator/recording/TruthText.h"

namespace tavocal::simulator {

namespace {

constexpr std::string_view kBlockKey = "block.";
constexpr std::string_view kTruthKey = "true.";

// One field of a device as text. `set` is false for a value that it can't have.
struct Field {
    std::string_view key;
    std::string (*get)(const LiveOptions& options);
    bool (*set)(LiveOptions& options, const std::string& value);
};

std::string flagText(bool flag) {
    return flag ? "1" : "0";
}

bool setFlag(bool& flag, const std::string& value) {
    flag = value == "1";
    return value == "1" || value == "0";
}

bool setNumber(double& number, const std::string& value, double low, double high) {
    try {
        number = parseDouble(value);
    } catch (const CalibrationException&) {
        return false;
    }
    return number >= low && number <= high;
}

bool setSeed(LiveOptions& options, const std::string& value) {
    const char* end = value.data() + value.size();
    const auto [stop, failure] = std::from_chars(value.data(), end, options.motion.seed);
    return failure == std::errc() && stop == end;
}

bool setSensors(LiveOptions& options, const std::string& value) {
    options.motion.sensors = value;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (!kindFromLetter(value[i]) || value.find(value[i], i + 1) != std::string::npos) {
            return false;
        }
    }
    return !value.empty();
}

constexpr std::array<Field, 11> kFields = {{
    {"seed", [](const LiveOptions& o) { return std::to_string(o.motion.seed); }, setSeed},
    {"sensors", [](const LiveOptions& o) { return o.motion.sensors; }, setSensors},
    {"secondary", [](const LiveOptions& o) { return flagText(o.motion.secondary); },
     [](LiveOptions& o, const std::string& v) { return setFlag(o.motion.secondary, v); }},
    {"form_factor", [](const LiveOptions& o) { return o.motion.formFactor; },
     [](LiveOptions& o, const std::string& v) { return (o.motion.formFactor = v, true); }},
    {"hinge", [](const LiveOptions& o) { return o.motion.hinge; },
     [](LiveOptions& o, const std::string& v) { return (o.motion.hinge = v, true); }},
    {"perfect", [](const LiveOptions& o) { return flagText(o.motion.perfect); },
     [](LiveOptions& o, const std::string& v) { return setFlag(o.motion.perfect, v); }},
    {"cross_axis", [](const LiveOptions& o) { return flagText(o.motion.crossAxis); },
     [](LiveOptions& o, const std::string& v) { return setFlag(o.motion.crossAxis, v); }},
    {"left_handed", [](const LiveOptions& o) { return flagText(o.motion.leftHanded); },
     [](LiveOptions& o, const std::string& v) { return setFlag(o.motion.leftHanded, v); }},
    {"hard_iron_mG", [](const LiveOptions& o) { return numberText(o.motion.hardIronMg); },
     [](LiveOptions& o, const std::string& v) {
         return setNumber(o.motion.hardIronMg, v, 0.0, 1e5);
     }},
    {"light_gain", [](const LiveOptions& o) { return numberText(o.light.gain); },
     [](LiveOptions& o, const std::string& v) { return setNumber(o.light.gain, v, 1e-6, 1e6); }},
    {"light_gain_2", [](const LiveOptions& o) { return numberText(o.light.secondaryGain); },
     [](LiveOptions& o, const std::string& v) {
         return setNumber(o.light.secondaryGain, v, 1e-6, 1e6);
     }},
}};

bool readHex(const std::string& digits, Bytes& bytes) {
    constexpr int kBase = 16;
    bytes.clear();
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        const char* begin = digits.data() + i;
        std::uint8_t byte = 0;
        const auto [stop, failure] = std::from_chars(begin, begin + 2, byte, kBase);
        if (failure != std::errc() || stop != begin + 2) {
            return false;
        }
        bytes.push_back(byte);
    }
    return digits.size() % 2 == 0;
}

bool readBlock(const std::string& luidDigits, const std::string& digits, Flash& flash) {
    LUID luid;
    Bytes block;
    if (!parseLuidText(luidDigits, luid) || !readHex(digits, block) ||
        !(block.empty() || fitsSensor(luid, block))) {
        return false;
    }
    flash.store(luid, block);
    return true;
}

bool readField(const std::string& key, const std::string& value, LiveOptions& options) {
    for (const Field& field : kFields) {
        if (field.key == key) {
            return field.set(options, value);
        }
    }
    return false;
}

bool readLine(const std::string& line, LiveOptions& options, Flash& flash) {
    const std::size_t sign = line.find('=');
    if (sign == std::string::npos) {
        return line.empty();
    }
    const std::string key = line.substr(0, sign);
    const std::string value = line.substr(sign + 1);
    if (key.starts_with(kTruthKey)) {
        return true;
    }
    return key.starts_with(kBlockKey) ? readBlock(key.substr(kBlockKey.size()), value, flash)
                                      : readField(key, value, options);
}

}  // namespace

std::string deviceIdentityText(const LiveOptions& options) {
    std::string text;
    for (const Field& field : kFields) {
        text += keyValueLine(std::string(field.key), field.get(options));
    }
    return text;
}

std::string deviceFileText(const LiveOptions& options, const Flash& flash) {
    std::string text = deviceIdentityText(options);
    for (const SensorModel& sensor : makeSensors(options.motion)) {
        text += sensorTruthText(std::string(kTruthKey) + sensor.name(), sensor.truth());
    }
    for (const auto& [luid, block] : flash.blocks()) {
        text += keyValueLine(std::string(kBlockKey) + luid, hexText(block.data(), block.size()));
    }
    return text;
}

void readDeviceFile(const std::string& text, LiveOptions& options, Flash& flash) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string line = text.substr(begin, end - begin);
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (!readLine(line, options, flash)) {
            throw OutputError("The device file has a line that makes no sense: " + line);
        }
        begin = end + 1;
    }
}

}  // namespace tavocal::simulator
