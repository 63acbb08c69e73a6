#include "sensors/motion/ExpectedGravity.h"

#include <array>

#include "sensors/model/SecondaryMounting.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

using Position = std::array<int, 3>;
using Positions = std::array<Position, 4>;

struct FlowTable {
    Positions primary;
    // By SecondaryMounting.
    std::array<Positions, 4> secondary;
};

constexpr FlowTable kFull = {
    {{{0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {0, -1, 0}}},
    {{
        {{{0, 0, -1}, {0, -1, 0}, {1, 0, 0}, {0, 1, 0}}},
        {{{0, 0, -1}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}}},
        {{{0, 0, -1}, {-1, 0, 0}, {0, -1, 0}, {1, 0, 0}}},
        {{{0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}}},
    }},
};

constexpr FlowTable kFourSteps = {
    {{{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {{
        {{{0, 0, -1}, {-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}},
        {{{0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {0, 0, -1}}},
        {{{0, 0, -1}, {0, 1, 0}, {-1, 0, 0}, {0, 0, -1}}},
        {{{0, 0, -1}, {0, -1, 0}, {1, 0, 0}, {0, 0, -1}}},
    }},
};

// Flat on the table throughout.
constexpr Positions kFaceUp = {{{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 0, 1}}};
constexpr Positions kFaceDown = {{{0, 0, -1}, {0, 0, -1}, {0, 0, -1}, {0, 0, -1}}};

const Positions& positionsOf(const Sensor& sensor, FlowType flow) {
    if (flow == FlowType::MagAccuracyTest) {
        return sensor.isPrimary() ? kFaceUp : kFaceDown;
    }
    const FlowTable& table = flow == FlowType::FourSteps ? kFourSteps : kFull;
    if (sensor.isPrimary()) {
        return table.primary;
    }
    return table.secondary[static_cast<std::size_t>(secondaryMounting(sensor))];
}

}  // namespace

Matrix expectedGravity(const Sensor& sensor, FlowType flow, double gravity) {
    const Positions& positions = positionsOf(sensor, flow);
    Matrix expected(static_cast<int>(positions.size()), 3);
    for (int r = 0; r < expected.rows(); ++r) {
        for (int c = 0; c < 3; ++c) {
            expected[r][c] =
                gravity * positions[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
        }
    }
    return expected;
}

}  // namespace tavocal
