#include <gtest/gtest.h>

#include <algorithm>

#include "calibration/InertialBlock.h"
#include "support/LiveMotionRun.h"

// Live runs on firmware clocks of all kinds.
namespace tavocal::test {
namespace {

using Clock = std::function<std::uint64_t(std::uint64_t)>;

constexpr std::uint64_t kUnixTime = 1'764'000'000'000'000;
constexpr std::uint64_t kSecond = 1'000'000;
constexpr std::uint64_t kMinute = 60 * kSecond;

// The blocks of the two sensors that such a run calibrates; an empty one where that failed.
struct Result {
    explicit Result(const Clock& clock) : run(recording(), FlowType::FourSteps, {clock}) {
        for (const char* name : {"Accelerometer", "Gyroscope"}) {
            run.calibrate(name);
            blocks.push_back(run.sensors.at(name)->calibrationToWrite);
        }
    }

    static const simulator::Recording& recording() {
        return shortRecording(simulator::Flow::FourSteps);
    }

    LiveMotionRun run;
    std::vector<CalibrationBlock> blocks;
};

// Less than what an operator's hand makes of a second calibration.
void expectAlike(const CalibrationBlock& block, const CalibrationBlock& expected) {
    const StaticBlockFields a = decodeStaticBlock(block);
    const StaticBlockFields b = decodeStaticBlock(expected);
    EXPECT_LT(largestMagnitude(a.offset - b.offset), 5000.0);
    EXPECT_LT(largestMagnitude(flattened(a.scale) - flattened(b.scale)), 0.05);
    EXPECT_EQ(flattened(a.axisMapping), flattened(b.axisMapping));
}

}  // namespace

// As long as a double holds the microseconds, nothing tells where a clock began. Behind that, times
// are only good to 2 milliseconds.
TEST(FirmwareClock, MayBeginAnywhere) {
    constexpr std::uint64_t kExactEnd = std::uint64_t{1} << 53;
    const Result plain([](std::uint64_t time) { return time; });
    for (const std::uint64_t begin :
         {kUnixTime, kExactEnd - kMinute - 992, std::uint64_t{1} << 63, UINT64_MAX - kMinute}) {
        SCOPED_TRACE(begin);
        const Result result([begin](std::uint64_t time) { return begin + time; });
        ASSERT_EQ(result.run.process->stagesDone, 4);
        for (std::size_t i = 0; i < result.blocks.size(); ++i) {
            if (begin < kExactEnd) {
                EXPECT_EQ(result.blocks[i], plain.blocks[i]);
            } else {
                expectAlike(result.blocks[i], plain.blocks[i]);
            }
        }
    }
}

// A clock that goes wrong in the middle of a run costs the calibration or nothing.
TEST(FirmwareClock, MayJumpStandOrRunBack) {
    const Result plain([](std::uint64_t time) { return time; });
    int blocks = 0;
    for (std::uint64_t moment = kSecond / 2; moment < 14 * kSecond; moment += 27 * kSecond / 10) {
        const Clock clocks[] = {
            [moment](std::uint64_t time) { return time < moment ? time : kUnixTime + time; },
            [moment](std::uint64_t time) { return time < moment ? kUnixTime + time : time; },
            [moment](std::uint64_t time) { return std::min(time, moment); }};
        for (const Clock& clock : clocks) {
            SCOPED_TRACE(moment);
            const Result result(clock);
            for (std::size_t i = 0; i < result.blocks.size(); ++i) {
                if (!result.blocks[i].empty()) {
                    ++blocks;
                    expectAlike(result.blocks[i], plain.blocks[i]);
                }
            }
        }
    }
    EXPECT_GT(blocks, 0);
}

}  // namespace tavocal::test
