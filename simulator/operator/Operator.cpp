#include "simulator/operator/Operator.h"

#include <array>
#include <cmath>

#include "simulator/device/Device.h"

namespace tavocal::simulator {

namespace {

// Metres, world frame. Nobody comes back to the very place where the walk began.
constexpr std::array<Vec3, 4> kWalk = {
    {{0.3, 0.0, 0.0}, {0.0, 0.2, 0.0}, {-0.2, 0.0, 0.0}, {0.0, -0.15, 0.0}}};
constexpr double kKnockDegrees = 25.0;
constexpr double kKnockSeconds = 0.5;
constexpr double kKnockDelay = 0.6;  // after the position was taken: not yet seen as still
constexpr double kSilenceDelay = 0.5;
constexpr Vec3 kMagnetPlace{0.2, 0.15, 0.0};   // metres from the device, world frame
constexpr Vec3 kMagnetMoment{4.0, -3.0, 2.0};  // ampere square metres

Quaternion turnAbout(const Vec3& axis, double degrees) {
    return fromRotationVector(axis * (degrees * kRadiansPerDegree));
}

}  // namespace

Operator::Operator(const OperatorOptions& theOptions, std::uint64_t seed, Device& theDevice)
    : options(theOptions), device(theDevice) {
    plan(seed);
    // A flow that begins with a movement begins from the position that its first step leads to.
    device.motion().startAt(staysPut(0) ? targetOf(0) : targets[0]);
}

void Operator::plan(std::uint64_t seed) {
    Random random(seed, "placement");
    targets.clear();
    Quaternion exact;
    for (const FlowStep& step : flowSteps(options.flow)) {
        exact = exact * turnAbout(step.axis, step.degrees);
        const Vec3 error = random.normalVector() * options.placementDegrees;
        targets.push_back(exact * fromRotationVector(error * kRadiansPerDegree));
    }
    mistakeStep = options.mistake == Mistake::None ? std::nullopt
                  : options.mistakeStep            ? options.mistakeStep
                                                   : usualStep(options.mistake, options.flow);
}

void Operator::begin(const OperatorOptions& theOptions, std::uint64_t seed, double now) {
    options = theOptions;
    plan(seed);
    const Quaternion start = device.motion().steadyPoseAt(now).attitude;
    Movement movement;
    movement.begin = now;
    movement.duration = options.tiltSeconds;
    movement.turn = toRotationVector(conjugate(start) * targets[0]);
    device.motion().append(movement);
}

bool Operator::errs(Mistake mistake, std::size_t step) const {
    return options.mistake == mistake && mistakeStep == step;
}

// A tilt leads to another position; a full turn leads back to the same one.
bool Operator::isTilt(std::size_t step) const {
    const double degrees = std::abs(flowSteps(options.flow)[step].degrees);
    return degrees > 0.0 && degrees < 360.0;
}

bool Operator::staysPut(std::size_t step) const {
    const FlowStep& asked = flowSteps(options.flow)[step];
    return errs(Mistake::SkippedTurn, step) || (asked.degrees == 0.0 && !asked.walks);
}

// How far the step's turn really goes.
double Operator::turnDegrees(std::size_t step) const {
    const double degrees = flowSteps(options.flow)[step].degrees;
    if (errs(Mistake::SkippedTurn, step)) {
        return 0.0;
    }
    if (errs(Mistake::HalfTurn, step)) {
        return 0.5 * degrees;
    }
    const bool opposite =
        errs(Mistake::WrongTurn, step) || (errs(Mistake::WrongPosition, step) && isTilt(step));
    return opposite ? -degrees : degrees;
}

// The attitude that the step ends in.
Quaternion Operator::targetOf(std::size_t step) const {
    const FlowStep& asked = flowSteps(options.flow)[step];
    const bool faceDown = errs(Mistake::WrongPosition, step) && !isTilt(step);
    const Quaternion flip = turnAbout(Vec3{1.0, 0.0, 0.0}, faceDown ? 180.0 : 0.0);
    return targets[step] * turnAbout(asked.axis, turnDegrees(step) - asked.degrees) * flip;
}

double Operator::perform(std::size_t step, double now) {
    takeMagnetAway(now);
    double still = staysPut(step) ? now : move(step, now);
    if (errs(Mistake::MovedDevice, step)) {
        still = knock(still + kKnockDelay);
    }
    if (errs(Mistake::Magnet, step)) {
        putMagnetDown(still);
    }
    if (errs(Mistake::SilentSensor, step)) {
        device.silence(options.silentSensor, still + kSilenceDelay);
    }
    return still;
}

double Operator::move(std::size_t step, double now) {
    if (flowSteps(options.flow)[step].walks) {
        return walk(now);
    }
    const double degrees = turnDegrees(step);
    const Quaternion start = device.motion().steadyPoseAt(now).attitude;
    Movement movement;
    movement.begin = now;
    movement.duration = isTilt(step) ? options.tiltSeconds : options.turnSeconds;
    movement.turn = flowSteps(options.flow)[step].axis * (degrees * kRadiansPerDegree);
    movement.correction =
        toRotationVector(conjugate(start * fromRotationVector(movement.turn)) * targetOf(step));
    device.motion().append(movement);
    return movement.end();
}

double Operator::walk(double now) {
    Movement leg;
    leg.begin = now;
    leg.duration = options.walkSeconds / static_cast<double>(kWalk.size());
    for (const Vec3& travel : kWalk) {
        leg.travel = travel;
        device.motion().append(leg);
        leg.begin = leg.end();
    }
    return leg.begin;
}

// Tips the device about a horizontal axis; it stays as it falls.
double Operator::knock(double now) {
    const Quaternion attitude = device.motion().steadyPoseAt(now).attitude;
    const Vec3 horizontal = rotate(conjugate(attitude), Vec3{0.6, 0.8, 0.0});
    Movement movement;
    movement.begin = now;
    movement.duration = kKnockSeconds;
    movement.turn = horizontal * (kKnockDegrees * kRadiansPerDegree);
    device.motion().append(movement);
    return movement.end();
}

void Operator::putMagnetDown(double now) {
    Magnet strong;
    strong.position = device.motion().steadyPoseAt(now).position + kMagnetPlace;
    strong.moment = kMagnetMoment;
    strong.begin = now;
    magnet = device.field().addMagnet(strong);
}

void Operator::takeMagnetAway(double now) {
    if (magnet) {
        device.field().removeMagnet(*magnet, now);
        magnet.reset();
    }
}

}  // namespace tavocal::simulator
