#include "simulator/live/LiveOperator.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "simulator/operator/PromptText.h"

namespace tavocal::simulator {

namespace {

// Simulated seconds.
constexpr double kReaction = 0.3;      // from a prompt to what is done about it
constexpr double kBeforeKey = 0.8;     // from the end of a movement to the key that says so
constexpr double kAfterStart = 1.0;    // from the begin of recording to the first movement
constexpr double kReadingMeter = 3.0;  // from a new light level to its reading

// A line of output that long is nothing that an operator reads.
constexpr std::size_t kLongestLine = 4096;

constexpr double kStrongFlicker = 12.0;

constexpr const char* kHold = "Hold system in current position";
constexpr const char* kPressEnter = "Press Enter when done";
constexpr const char* kPressToStart = "Press Enter to signal start and finish";
constexpr const char* kAskForCount = "Enter the number of steps to calibrate";
constexpr const char* kAskForLevel = "Please change the light level to the next level.";

bool hasArgument(const std::vector<std::string>& arguments, const std::string& name) {
    return std::any_of(arguments.begin(), arguments.end(),
                       [&](const std::string& argument) { return lowerCase(argument) == name; });
}

}  // namespace

LiveOperator::LiveOperator(const LiveOptions& theOptions,
                           const std::vector<std::string>& toolArguments, World& theWorld,
                           Keyboard theKeyboard)
    : options(theOptions), world(theWorld), type(std::move(theKeyboard)), arguments(toolArguments) {
    if (hasArgument(arguments, "-magtest")) {
        chooseFlow(Flow::MagTest);
    }
}

void LiveOperator::chooseFlow(Flow chosen) {
    flow = chosen;
    options.motion.flow = chosen;
    person.emplace(options.motion, options.motion.seed, world.device());
}

// Two flows have the same first prompt.
Flow LiveOperator::expectedFlow(std::size_t stepCount) const {
    if (stepCount == flowSteps(Flow::Full).size()) {
        return Flow::Full;
    }
    if (stepCount == flowSteps(Flow::Minimal).size()) {
        return Flow::Minimal;
    }
    return hasArgument(arguments, "-foursteps")         ? Flow::FourSteps
           : hasArgument(arguments, "-magaccuracytest") ? Flow::MagAccuracy
                                                        : Flow::AccelerometerOnly;
}

// ---- Reading ----

void LiveOperator::read(std::string_view output, double now) {
    for (const char character : output) {
        if (character == '\n') {
            readLine(plainLine(std::exchange(partialLine, {})), now);
        } else if (partialLine.size() < kLongestLine) {
            partialLine.push_back(character);
        }
    }
}

void LiveOperator::readLine(const std::string& line, double now) {
    if (gaveUp) {
        return;
    }
    if (const auto number = stepNumber(line)) {
        if (!flow) {
            chooseFlow(expectedFlow(number->count));
        }
        step = number->step;
        promptFits = false;
        if (number->count != person->stepCount()) {
            giveUp("A run of " + std::to_string(number->count) + " steps was not expected");
        }
    } else if (flow) {
        readMotionLine(line, now);
    } else {
        readLightLine(line, now);
    }
}

void LiveOperator::readMotionLine(const std::string& line, double now) {
    const PromptLine judged = judgePrompt(line, *flow, step);
    if (judged == PromptLine::Differs) {
        giveUp("The prompt asks for what its step does not need: " + line);
    }
    promptFits = promptFits || judged == PromptLine::Fits;
    if (!promptFits) {
        return;
    }
    if (line == kHold) {
        performStep(now + kReaction);
    } else if (line == kPressToStart) {
        press(now + kReaction);
        movesOnceRecording = true;
    } else if (line == kPressEnter && isUserPaced()) {
        performUserStep(now + kReaction);
    } else if (line == kPressEnter) {
        press(now + kReaction);
    }
}

void LiveOperator::readLightLine(const std::string& line, double now) {
    if (line.starts_with(kAskForCount)) {
        later(now + kReaction,
              [this](double) { type(std::to_string(options.levels.size()) + "\n"); });
    } else if (line.starts_with(kAskForLevel)) {
        nextLevel(now + kReaction);
    } else if (const auto lux = askedLight(line)) {
        setLight(*lux, now + kReaction);
    }
}

// ---- Moving ----

// The result is the time from which the device is still.
double LiveOperator::performStep(double now) {
    const double begin = std::max(now, world.device().motion().end());
    const std::size_t turn = placeOfTurn();
    const double still = person->perform(turn, begin);
    if (person->givesUpIn(turn)) {
        gaveUp = true;
    }
    return still;
}

// Which step's movement is made in the step at hand.
std::size_t LiveOperator::placeOfTurn() const {
    return isUserPaced() && step < options.turns.size()
               ? static_cast<std::size_t>(options.turns[step] - 'X')
               : step;
}

// A step that ends by a key.
void LiveOperator::performUserStep(double now) {
    const double still = performStep(now);
    press(options.pressesEarly ? 0.5 * (now + still) : still + kBeforeKey);
    ++step;
    promptFits = false;
}

// ---- Light ----

void LiveOperator::setLight(int lux, double now) {
    const bool last = level + 1 >= options.levels.size();
    if (!(last && options.lightMistake == LightMistake::StuckLight)) {
        world.lamp().changeTo(lux, now);
    }
    if (last && options.lightMistake == LightMistake::Unstable) {
        world.lamp().setFlicker(kStrongFlicker / options.light.gain, now);
    }
    ++level;
}

void LiveOperator::nextLevel(double now) {
    if (level >= options.levels.size() ||
        (level + 1 == options.levels.size() && options.lightMistake == LightMistake::CutShort)) {
        giveUp("There is no other light level");
        return;
    }
    const int lux = options.levels[level];
    setLight(lux, now);
    later(now + options.light.rampSeconds + kReadingMeter,
          [this, lux](double) { type(std::to_string(lux) + "\n"); });
}

// ---- Deeds ----

void LiveOperator::advance(double now, std::optional<double> recordingSince) {
    if (movesOnceRecording && recordingSince && now >= *recordingSince + kAfterStart) {
        movesOnceRecording = false;
        performUserStep(now + kReaction);
    }
    for (std::size_t i = 0; i < deeds.size();) {
        if (deeds[i].due > now) {
            ++i;
            continue;
        }
        const Deed deed = std::move(deeds[i]);
        deeds.erase(deeds.begin() + static_cast<std::ptrdiff_t>(i));
        deed.act(now);
    }
}

void LiveOperator::later(double due, std::function<void(double now)> act) {
    deeds.push_back({due, std::move(act)});
}

void LiveOperator::press(double due) {
    later(due, [this](double) { type("\n"); });
}

void LiveOperator::giveUp(const std::string& why) {
    gaveUp = true;
    reason = why;
}

}  // namespace tavocal::simulator
