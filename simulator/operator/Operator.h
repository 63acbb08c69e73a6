#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "simulator/device/SensorKind.h"
#include "simulator/maths/Quaternion.h"
#include "simulator/maths/Random.h"
#include "simulator/operator/Flow.h"
#include "simulator/operator/Mistake.h"

namespace tavocal::simulator {

class Device;

// How somebody works through a flow.
struct OperatorOptions {
    Flow flow = Flow::Full;
    double holdSeconds = 2.2;       // of each still stage
    double turnSeconds = 6.0;       // of a full turn
    double tiltSeconds = 1.8;       // of a quarter turn
    double walkSeconds = 12.0;      // of a walk around a rectangle
    double placementDegrees = 0.0;  // standard deviation of a position's error, per axis

    Mistake mistake = Mistake::None;
    std::optional<std::size_t> mistakeStep;  // counted from 0; without a value the usual one
    SensorKind silentSensor = SensorKind::Gyroscope;
};

// The person who moves the device. It is told which step to do now and plans the movement from
// there on, so a live run can ask for a step when its prompt appears, and a recording can ask for
// all steps at once. The device must outlive it. One thread at a time.
class Operator {
  public:
    // Puts the device where the flow begins.
    Operator(const OperatorOptions& theOptions, std::uint64_t seed, Device& theDevice);

    std::size_t stepCount() const { return targets.size(); }

    // Begins, at `now`, the movement to the position of `step`, with the mistake if it is its turn.
    // The result is the time from which the device is still there.
    // REQUIRES: step below stepCount(), now not before the end of the last movement.
    double perform(std::size_t step, double now);

    // The step in which the recording is broken off.
    bool givesUpIn(std::size_t step) const { return errs(Mistake::CutShort, step); }

    // Begins another flow, from the attitude that it begins in, to which the device is turned.
    // REQUIRES: now not before the end of the last movement.
    void begin(const OperatorOptions& theOptions, std::uint64_t seed, double now);

  private:
    void plan(std::uint64_t seed);
    bool errs(Mistake mistake, std::size_t step) const;
    bool isTilt(std::size_t step) const;
    bool staysPut(std::size_t step) const;
    Quaternion targetOf(std::size_t step) const;
    double turnDegrees(std::size_t step) const;
    double move(std::size_t step, double now);
    double walk(double now);
    double knock(double now);
    void putMagnetDown(double now);
    void takeMagnetAway(double now);

    OperatorOptions options;
    Device& device;
    std::vector<Quaternion> targets;  // the attitudes of the positions, with their small errors
    std::optional<std::size_t> mistakeStep;
    std::optional<std::size_t> magnet;  // name of the magnet beside the device
};

}  // namespace tavocal::simulator
