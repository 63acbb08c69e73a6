#include "simulator/operator/PromptText.h"

#include <array>
#include <charconv>
#include <string_view>
#include <vector>

#include "simulator/maths/Quaternion.h"

namespace tavocal::simulator {

namespace {

using Words = std::vector<std::string>;

Words wordsOf(std::string_view text) {
    Words words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (end > 0) {
            words.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

// Matches word by word; each "*" of the pattern takes a word, without a mark at its end, and a last
// "..." takes the rest.
std::optional<Words> match(const Words& words, std::string_view patternText) {
    Words pattern = wordsOf(patternText);
    const bool open = pattern.back() == "...";
    if (open) {
        pattern.pop_back();
    }
    if (open ? words.size() < pattern.size() : words.size() != pattern.size()) {
        return std::nullopt;
    }
    Words taken;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == "*") {
            taken.push_back(words[i].substr(0, words[i].find_last_not_of(",;.") + 1));
        } else if (pattern[i] != words[i]) {
            return std::nullopt;
        }
    }
    return taken;
}

std::optional<int> number(const std::string& text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, value);
    return failure == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

Vec3 axisOf(const std::string& letter) {
    return letter == "X" ? Vec3{1, 0, 0} : letter == "Y" ? Vec3{0, 1, 0} : Vec3{0, 0, 1};
}

// In the world's frame, East-North-Up.
std::optional<Vec3> directionOf(const std::string& name) {
    struct Direction {
        std::string_view name;
        Vec3 vector;
    };
    constexpr std::array<Direction, 6> kDirections = {{{"UP", {0, 0, 1}},
                                                       {"DOWN", {0, 0, -1}},
                                                       {"North", {0, 1, 0}},
                                                       {"South", {0, -1, 0}},
                                                       {"East", {1, 0, 0}},
                                                       {"West", {-1, 0, 0}}}};
    for (const Direction& direction : kDirections) {
        if (direction.name == name) {
            return direction.vector;
        }
    }
    return std::nullopt;
}

Quaternion attitudeAfter(Flow flow, std::size_t step) {
    Quaternion attitude;
    for (std::size_t i = 0; i <= step; ++i) {
        const FlowStep& turn = flowSteps(flow)[i];
        attitude = attitude * fromRotationVector(turn.axis * (turn.degrees * kRadiansPerDegree));
    }
    return attitude;
}

PromptLine verdict(bool fits) {
    return fits ? PromptLine::Fits : PromptLine::Differs;
}

PromptLine judgeTurn(const FlowStep& step, const Words& taken) {
    const double sign = taken.size() == 3 && taken[1] == "clockwise" ? -1.0 : 1.0;
    return verdict(number(taken[0]) == static_cast<int>(sign * step.degrees) &&
                   axisOf(taken.back()) == step.axis);
}

// Pairs of an axis and where it points to.
PromptLine judgePosition(const Quaternion& attitude, const Words& taken) {
    for (std::size_t i = 0; i + 1 < taken.size(); i += 2) {
        const std::optional<Vec3> direction = directionOf(taken[i + 1]);
        constexpr double kNearlyOne = 0.99;
        if (!direction || dot(rotate(attitude, axisOf(taken[i])), *direction) < kNearlyOne) {
            return PromptLine::Differs;
        }
    }
    return PromptLine::Fits;
}

constexpr std::array<std::string_view, 2> kTurns = {
    "Slowly, rotate the device * degrees * around * axis",
    "Slowly rotate the device * degrees around * axis"};
constexpr std::string_view kWalk = "Slowly move the device in a rectangle, ...";
constexpr std::array<std::string_view, 5> kPositions = {
    "Place the device screen's * axis directed *",
    "Place the device screen's * axis directed * * axis directed to *",
    "At the end of this stage, the device's * axis directed *",
    "At the end of this stage, the device's * axis directed * * axis directed to *",
    "At the end of this stage, the device's * axis is directed * device turned 90 degrees ..."};

}  // namespace

std::optional<StepNumber> stepNumber(const std::string& line) {
    const auto taken = match(wordsOf(line), "Step * out of *");
    if (!taken) {
        return std::nullopt;
    }
    const auto step = number((*taken)[0]);
    const auto count = number((*taken)[1]);
    if (!step || !count || *step < 1 || *step > *count) {
        return std::nullopt;
    }
    return StepNumber{static_cast<std::size_t>(*step - 1), static_cast<std::size_t>(*count)};
}

std::optional<int> askedLight(const std::string& line) {
    const auto taken = match(wordsOf(line), "Please change the light level to * lux");
    return taken ? number(taken->front()) : std::nullopt;
}

PromptLine judgePrompt(const std::string& line, Flow flow, std::size_t step) {
    const Words words = wordsOf(line);
    for (const std::string_view pattern : kTurns) {
        if (const auto taken = match(words, pattern)) {
            return judgeTurn(flowSteps(flow)[step], *taken);
        }
    }
    if (match(words, kWalk)) {
        return verdict(flowSteps(flow)[step].walks);
    }
    for (const std::string_view pattern : kPositions) {
        if (const auto taken = match(words, pattern)) {
            return judgePosition(attitudeAfter(flow, step), *taken);
        }
    }
    return PromptLine::Other;
}

std::string plainLine(const std::string& line) {
    std::string plain;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\x1b') {
            i = std::min(line.find('m', i), line.size());
        } else if (static_cast<unsigned char>(line[i]) >= ' ') {
            plain.push_back(line[i]);
        }
    }
    return plain;
}

}  // namespace tavocal::simulator
