#include "sensors/motion/ExpectedTurns.h"

#include <array>
#include <vector>

#include "numerics/Vector.h"
#include "sensors/model/SecondaryMounting.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

struct TurnTable {
    FlowType flow;
    double nominalAngle;
    std::array<std::array<double, 3>, 3> turns;
    bool byMounting;  // a secondary sensor sees the turns by how its half is mounted
};

constexpr std::array<TurnTable, 3> kTurnTables = {{
    {FlowType::Full, 360.0, {{{0, 0, 360}, {0, 360, 0}, {360, 0, 0}}}, true},
    {FlowType::FourSteps, 90.0, {{{0, 90, 0}, {0, 0, 90}, {-90, 0, 0}}}, true},
    {FlowType::MagAccuracyTest, 90.0, {{{0, 0, 90}, {0, 0, 90}, {0, 0, 90}}}, false},
}};

Vector seenBySecondary(const Vector& turn, SecondaryMounting mounting) {
    switch (mounting) {
        case SecondaryMounting::Bottom:
            return {turn[0], -turn[1], -turn[2]};
        case SecondaryMounting::Top:
            return {-turn[0], turn[1], -turn[2]};
        case SecondaryMounting::Left:
            return {-turn[1], -turn[0], -turn[2]};
        case SecondaryMounting::Right:
            return {turn[1], turn[0], -turn[2]};
    }
    return turn;
}

ExpectedTurns turnsOf(const TurnTable& table, const Sensor& sensor) {
    const bool mapped = table.byMounting && !sensor.isPrimary();
    std::vector<Vector> rows;
    for (const auto& turn : table.turns) {
        const Vector primary(turn.data(), static_cast<int>(turn.size()));
        rows.push_back(mapped ? seenBySecondary(primary, secondaryMounting(sensor)) : primary);
    }
    return {table.nominalAngle, Matrix(rows)};
}

}  // namespace

std::optional<ExpectedTurns> expectedTurns(const Sensor& sensor, FlowType flow) {
    for (const TurnTable& table : kTurnTables) {
        if (table.flow == flow) {
            return turnsOf(table, sensor);
        }
    }
    return std::nullopt;
}

}  // namespace tavocal
