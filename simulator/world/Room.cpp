#include "simulator/world/Room.h"

#include <array>

#include "simulator/base/Names.h"
#include "simulator/world/MagneticField.h"

namespace tavocal::simulator {

namespace {

constexpr std::array<std::string_view, 3> kNames = {"clean", "usual", "magnetic"};

}  // namespace

std::optional<Room> roomFromName(std::string_view name) {
    return valueNamed<Room>(kNames, name);
}

std::vector<Magnet> magnetsOf(Room room) {
    switch (room) {
        case Room::Usual:
            return {Magnet{{1.1, 0.1, -0.3}, {45.0, 0.0, -13.5}}};
        case Room::Magnetic:
            return {Magnet{{0.45, 0.0, -0.25}, {0.0, 4.0, 0.0}}};
        case Room::Clean:
            break;
    }
    return {};
}

}  // namespace tavocal::simulator
