#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "simulator/Recording.h"

namespace tavocal::simulator {
namespace {

Recording magTest(Room room) {
    RecordingOptions options;
    options.flow = Flow::MagTest;
    options.sensors = "M";
    options.perfect = true;
    options.room = room;
    return record(options);
}

const std::vector<Row>& field(const Recording& recording) {
    return recording.rows.at("Magnetometer");
}

// The samples between two times in milliseconds.
std::vector<Vec3> part(const Recording& recording, double begin, double end) {
    std::vector<Vec3> result;
    for (const Row& row : field(recording)) {
        if (row.time >= begin && row.time <= end) {
            result.push_back({row.values[0], row.values[1], row.values[2]});
        }
    }
    return result;
}

std::vector<Vec3> walkOf(const Recording& recording) {
    const std::vector<StillStage>& stages = recording.truth.stages;
    return part(recording, stages[2].end, stages[3].end);
}

struct Dip {
    double deviation;
    double range;
};

// Of the angles between the field and the device's Z axis, in degrees.
Dip dipOf(const std::vector<Vec3>& samples) {
    std::vector<double> angles;
    double sum = 0.0;
    for (const Vec3& sample : samples) {
        angles.push_back(std::acos(sample.z / norm(sample)) / kRadiansPerDegree);
        sum += angles.back();
    }
    const double mean = sum / static_cast<double>(angles.size());
    double squares = 0.0;
    for (const double angle : angles) {
        squares += (angle - mean) * (angle - mean);
    }
    const auto [low, high] = std::minmax_element(angles.begin(), angles.end());
    return {std::sqrt(squares / static_cast<double>(angles.size())), *high - *low};
}

TEST(MagTestFlowTest, TurnsGoAroundXYAndZAndComeBack) {
    const Recording recording = magTest(Room::Usual);
    double begin = 0.0;
    for (std::size_t turn = 0; turn < 3; ++turn) {
        const double end = recording.truth.stages[turn].end;
        const std::vector<Vec3> samples = part(recording, begin, end);
        std::array<double, 3> range{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto [low, high] = std::minmax_element(
                samples.begin(), samples.end(),
                [axis](const Vec3& a, const Vec3& b) { return a[axis] < b[axis]; });
            range[axis] = (*high)[axis] - (*low)[axis];
        }
        const auto quietest = std::min_element(range.begin(), range.end());
        EXPECT_EQ(quietest - range.begin(), static_cast<std::ptrdiff_t>(turn));
        EXPECT_GT(*std::max_element(range.begin(), range.end()), 450.0);
        EXPECT_LT(norm(samples.front() - samples.back()), 50.0);
        begin = end;
    }
}

// The walk ends 10 to 40 mG from where it began; in a place to calibrate in the dip angle stays
// within 3.5 degrees of deviation and 17 of range, near a magnet it doesn't.
TEST(MagTestFlowTest, WalkTellsAGoodRoomFromABadOne) {
    for (const Room room : {Room::Usual, Room::Magnetic}) {
        SCOPED_TRACE(roomName(room));
        const std::vector<Vec3> walk = walkOf(magTest(room));
        const double way = norm(walk.back() - walk.front());
        EXPECT_GT(way, 13.0);
        EXPECT_LT(way, 37.0);
        const Dip dip = dipOf(walk);
        EXPECT_EQ(dip.deviation < 3.0, room == Room::Usual) << dip.deviation;
        EXPECT_EQ(dip.range < 14.0, room == Room::Usual) << dip.range;
    }
    EXPECT_LT(dipOf(walkOf(magTest(Room::Clean))).deviation, 0.5);
}

}  // namespace
}  // namespace tavocal::simulator
