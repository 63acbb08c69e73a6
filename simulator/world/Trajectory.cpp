#include "simulator/world/Trajectory.h"

#include <algorithm>

namespace tavocal::simulator {

namespace {

// Steps of the central differences, in seconds: long enough for the digits, short against the
// fastest trembling.
constexpr double kRateStep = 1e-4;
constexpr double kAccelerationStep = 1e-3;

}  // namespace

Trajectory::Trajectory(const Hand& theHand) : hand(theHand) {}

void Trajectory::startAt(const Quaternion& attitude) {
    origin.attitude = attitude;
}

void Trajectory::append(const Movement& movement) {
    legs.push_back({movement, steadyPoseAt(movement.begin)});
}

const Trajectory::Leg* Trajectory::legAt(double seconds) const {
    const auto next =
        std::upper_bound(legs.begin(), legs.end(), seconds,
                         [](double time, const Leg& leg) { return time < leg.movement.begin; });
    return next == legs.begin() ? nullptr : &*(next - 1);
}

Pose Trajectory::steadyPoseAt(double seconds) const {
    const Leg* leg = legAt(seconds);
    if (leg == nullptr) {
        return origin;
    }
    const Movement& movement = leg->movement;
    return {leg->start.attitude * movement.rotation(seconds),
            leg->start.position + movement.travel * movement.progress(seconds)};
}

Pose Trajectory::poseAt(double seconds) const {
    Pose pose = steadyPoseAt(seconds);
    Vec3 added = hand.tremorTurn(seconds);
    const Leg* leg = legAt(seconds);
    if (leg != nullptr && seconds < leg->movement.end()) {
        added += hand.wobble(seconds) * leg->movement.liveliness(seconds);
    }
    pose.attitude = pose.attitude * fromRotationVector(added);
    pose.position += hand.tremorTravel(seconds);
    return pose;
}

double Trajectory::end() const {
    return legs.empty() ? 0.0 : legs.back().movement.end();
}

Vec3 Trajectory::angularRate(double seconds) const {
    const Quaternion before = poseAt(seconds - kRateStep).attitude;
    const Quaternion after = poseAt(seconds + kRateStep).attitude;
    const Vec3 turned = toRotationVector(conjugate(before) * after);
    return turned * (1.0 / (2.0 * kRateStep * kRadiansPerDegree));
}

Vec3 Trajectory::positionOf(double seconds, const Vec3& point) const {
    const Pose pose = poseAt(seconds);
    return pose.position + rotate(pose.attitude, point);
}

Vec3 Trajectory::acceleration(double seconds, const Vec3& point) const {
    const Vec3 before = positionOf(seconds - kAccelerationStep, point);
    const Vec3 now = positionOf(seconds, point);
    const Vec3 after = positionOf(seconds + kAccelerationStep, point);
    return (before + after - 2.0 * now) * (1.0 / (kAccelerationStep * kAccelerationStep));
}

}  // namespace tavocal::simulator
