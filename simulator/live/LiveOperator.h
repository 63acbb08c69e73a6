#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simulator/device/World.h"
#include "simulator/live/LiveOptions.h"
#include "simulator/operator/Operator.h"

namespace tavocal::simulator {

// The person in front of the tool: reads what it prints, line by line, types what it asks for and
// moves the device, or changes the light, as the prompt says, and only once that has been read. A
// prompt that doesn't fit the flow that the tool was asked for makes him give up. Times are
// simulated seconds. One thread at a time.
class LiveOperator {
  public:
    // Takes what is typed, with its line end.
    using Keyboard = std::function<void(const std::string& text)>;

    // `toolArguments` tell which flow to expect. REQUIRES: `theWorld` outlives the operator.
    LiveOperator(const LiveOptions& theOptions, const std::vector<std::string>& toolArguments,
                 World& theWorld, Keyboard theKeyboard);

    // A piece of the tool's output.
    void read(std::string_view output, double now);

    // Does what is due. `recordingSince` tells since when the firmware records, if it does: the
    // device has a little light for that.
    void advance(double now, std::optional<double> recordingSince);

    // Why the operator has given up; empty while he hasn't.
    const std::string& complaint() const { return reason; }

  private:
    struct Deed {
        double due;
        std::function<void(double now)> act;
    };

    void readLine(const std::string& line, double now);
    void readMotionLine(const std::string& line, double now);
    void readLightLine(const std::string& line, double now);
    void chooseFlow(Flow chosen);
    Flow expectedFlow(std::size_t stepCount) const;
    bool isUserPaced() const { return flow == Flow::MagTest; }

    double performStep(double now);
    void performUserStep(double now);
    std::size_t placeOfTurn() const;
    void setLight(int lux, double now);
    void nextLevel(double now);

    void later(double due, std::function<void(double now)> act);
    void press(double due);
    void giveUp(const std::string& why);

    LiveOptions options;
    World& world;
    Keyboard type;
    std::vector<std::string> arguments;

    std::string partialLine;
    std::optional<Flow> flow;        // none until a motion prompt has come
    std::optional<Operator> person;  // once there is a flow
    std::size_t step = 0;
    bool promptFits = false;          // the step at hand has asked for what the flow needs
    bool movesOnceRecording = false;  // the first step waits for the little light
    std::size_t level = 0;            // the next one
    std::deque<Deed> deeds;           // in the order in which they were planned
    bool gaveUp = false;
    std::string reason;
};

}  // namespace tavocal::simulator
