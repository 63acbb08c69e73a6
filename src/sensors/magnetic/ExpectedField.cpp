#include "sensors/magnetic/ExpectedField.h"

#include <array>

#include "sensors/model/SecondaryMounting.h"
#include "sensors/model/Sensor.h"

namespace tavocal {

namespace {

// One element of a reading, of a field of strength 1.
enum Term { O, S, s, C, c };  // zero, sine, minus sine, cosine, minus cosine of the dip angle

using Positions = std::array<std::array<Term, 3>, 4>;

// Z up and Y north; Y up and Z south; X up and Z south; Y down and Z south.
constexpr Positions kPrimary = {{{O, C, s}, {O, s, c}, {s, O, c}, {O, S, c}}};

// By SecondaryMounting.
constexpr std::array<Positions, 4> kSecondary = {{
    {{{O, c, S}, {O, S, C}, {s, O, C}, {O, s, C}}},
    {{{O, C, S}, {O, s, C}, {S, O, C}, {O, S, C}}},
    {{{c, O, S}, {S, O, C}, {O, S, C}, {s, O, C}}},
    {{{C, O, S}, {s, O, C}, {O, s, C}, {S, O, C}}},
}};

using Turn = std::array<std::array<int, 3>, 3>;

// By SecondaryMounting.
constexpr std::array<Turn, 4> kTurns = {{
    {{{1, 0, 0}, {0, -1, 0}, {0, 0, -1}}},
    {{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}},
    {{{0, -1, 0}, {-1, 0, 0}, {0, 0, -1}}},
    {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}},
}};

const Positions& positionsOf(const Sensor& sensor) {
    return sensor.isPrimary() ? kPrimary
                              : kSecondary[static_cast<std::size_t>(secondaryMounting(sensor))];
}

}  // namespace

Matrix expectedField(const Sensor& sensor, double sinDip, double cosDip, double field) {
    const std::array<double, 5> terms = {0.0, sinDip, -sinDip, cosDip, -cosDip};
    const Positions& positions = positionsOf(sensor);
    Matrix expected(static_cast<int>(positions.size()), 3);
    for (int r = 0; r < expected.rows(); ++r) {
        for (int k = 0; k < 3; ++k) {
            const Term term = positions[static_cast<std::size_t>(r)][static_cast<std::size_t>(k)];
            expected[r][k] = terms[term] * field;
        }
    }
    return expected;
}

Matrix secondaryTurn(const Sensor& sensor) {
    const Turn& turn = kTurns[static_cast<std::size_t>(secondaryMounting(sensor))];
    Matrix result(3, 3);
    for (int r = 0; r < 3; ++r) {
        for (int k = 0; k < 3; ++k) {
            result[r][k] = turn[static_cast<std::size_t>(r)][static_cast<std::size_t>(k)];
        }
    }
    return result;
}

}  // namespace tavocal
