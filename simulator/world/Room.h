#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tavocal::simulator {

struct Magnet;

// Where a run takes place.
enum class Room {
    Clean,     // nothing but the earth's field
    Usual,     // some iron a metre away: the field varies a little from place to place
    Magnetic,  // a magnet under the desk, in the way of a walk: no place to calibrate in
};

// "clean", "usual", "magnetic".
std::optional<Room> roomFromName(std::string_view name);

// What disturbs the field around the device, which begins at the origin.
std::vector<Magnet> magnetsOf(Room room);

}  // namespace tavocal::simulator
