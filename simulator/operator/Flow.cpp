#include "simulator/operator/Flow.h"

#include <array>

namespace tavocal::simulator {

namespace {

constexpr Vec3 kX{1.0, 0.0, 0.0};
constexpr Vec3 kY{0.0, 1.0, 0.0};
constexpr Vec3 kZ{0.0, 0.0, 1.0};

constexpr FlowStep kFirstPosition{{}, 0.0};

constexpr std::array<FlowStep, 7> kFull = {{
    kFirstPosition,  // Z up, Y to the north
    {kZ, 360.0},
    {kX, 90.0},  // Y up, Z to the south
    {kY, 360.0},
    {kZ, 90.0},  // X up, Z to the south
    {kX, 360.0},
    {kZ, 90.0},  // Y down, Z to the south
}};
constexpr std::array<FlowStep, 4> kAccelerometerOnly = {
    {kFirstPosition, {kX, 90.0}, {kZ, 90.0}, {kZ, 90.0}}};
constexpr std::array<FlowStep, 4> kFourSteps = {
    {kFirstPosition, {kY, 90.0}, {kZ, 90.0}, {kX, -90.0}}};
constexpr std::array<FlowStep, 4> kMagAccuracy = {
    {kFirstPosition, {kZ, 90.0}, {kZ, 90.0}, {kZ, 90.0}}};
constexpr std::array<FlowStep, 1> kMinimal = {kFirstPosition};
constexpr std::array<FlowStep, 4> kMagTest = {
    {{kX, 360.0}, {kY, 360.0}, {kZ, 360.0}, {{}, 0.0, true}}};

struct Entry {
    Flow flow;
    std::string_view name;
    std::span<const FlowStep> steps;
};

constexpr std::array<Entry, 6> kFlows = {{
    {Flow::Full, "full", kFull},
    {Flow::AccelerometerOnly, "accelerometer", kAccelerometerOnly},
    {Flow::FourSteps, "foursteps", kFourSteps},
    {Flow::MagAccuracy, "magaccuracy", kMagAccuracy},
    {Flow::Minimal, "minimal", kMinimal},
    {Flow::MagTest, "magtest", kMagTest},
}};

const Entry& entryOf(Flow flow) {
    return kFlows[static_cast<std::size_t>(flow)];
}

}  // namespace

std::span<const FlowStep> flowSteps(Flow flow) {
    return entryOf(flow).steps;
}

std::string_view flowName(Flow flow) {
    return entryOf(flow).name;
}

std::optional<Flow> flowFromName(std::string_view name) {
    for (const Entry& entry : kFlows) {
        if (entry.name == name) {
            return entry.flow;
        }
    }
    return std::nullopt;
}

}  // namespace tavocal::simulator
