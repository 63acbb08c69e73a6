#include <gtest/gtest.h>

#include <string>

#include "simulator/Recording.h"
#include "simulator/StageWatcher.h"

namespace tavocal::simulator {
namespace {

struct GoodRun {
    Flow flow;
    std::string sensors;
    double rateHz;
};

std::string nameOf(const GoodRun& run) {
    return std::string(flowName(run.flow)) + " " + run.sensors + " at " +
           std::to_string(run.rateHz);
}

// The soft end of a movement may pass as noise, and passes longest where only the magnetometer
// looks: the last tenth of a full turn, in which the device turns by less than 3 degrees.
constexpr double kTailMs = 600.0;

void expectAllStages(const RecordingOptions& options) {
    const Recording recording = record(options);
    const std::vector<double> ends = StageWatcher(recording).stageEnds();
    ASSERT_EQ(ends.size(), flowSteps(options.flow).size());
    for (std::size_t i = 0; i < ends.size(); ++i) {
        EXPECT_GE(ends[i] - 1000.0, recording.truth.stages[i].begin - kTailMs) << "stage " << i;
        EXPECT_LE(ends[i], recording.truth.stages[i].end) << "stage " << i;
    }
}

TEST(DetectionTest, EachStageOfAGoodRunIsSeenWhileItLasts) {
    std::uint64_t seed = 0;
    for (const GoodRun& run :
         {GoodRun{Flow::Full, "AGM", 100.0}, GoodRun{Flow::Full, "AG", 50.0},
          GoodRun{Flow::Full, "AM", 100.0}, GoodRun{Flow::AccelerometerOnly, "A", 100.0},
          GoodRun{Flow::AccelerometerOnly, "A", 50.0}, GoodRun{Flow::FourSteps, "AGM", 100.0},
          GoodRun{Flow::FourSteps, "AG", 50.0}, GoodRun{Flow::MagAccuracy, "AGM", 100.0},
          GoodRun{Flow::MagAccuracy, "M", 50.0}}) {
        RecordingOptions options;
        options.seed = ++seed;
        options.flow = run.flow;
        options.sensors = run.sensors;
        options.rateHz = run.rateHz;
        options.perfect = run.flow == Flow::MagAccuracy;
        SCOPED_TRACE(nameOf(run) + " seed " + std::to_string(seed));
        expectAllStages(options);
    }
}

std::size_t stagesSeen(Flow flow, Mistake mistake) {
    RecordingOptions options;
    options.flow = flow;
    options.mistake = mistake;
    options.perfect = flow == Flow::MagAccuracy;
    return StageWatcher(record(options)).stageEnds().size();
}

TEST(DetectionTest, AMistakeCostsStagesWhereTheMovementIsMissing) {
    EXPECT_LT(stagesSeen(Flow::Full, Mistake::SkippedTurn), 7u);
    EXPECT_LT(stagesSeen(Flow::FourSteps, Mistake::SkippedTurn), 4u);
    EXPECT_EQ(stagesSeen(Flow::Full, Mistake::CutShort), 4u);
    EXPECT_EQ(stagesSeen(Flow::MagAccuracy, Mistake::CutShort), 2u);
    EXPECT_LT(stagesSeen(Flow::AccelerometerOnly, Mistake::CutShort), 4u);
}

// These mistakes are seen by what comes out of the run, so its stages must be found.
TEST(DetectionTest, AMovementThatWasMadeWronglyIsStillSeenAsOne) {
    for (const Mistake mistake : {Mistake::HalfTurn, Mistake::WrongTurn, Mistake::WrongPosition,
                                  Mistake::MovedDevice, Mistake::Magnet}) {
        SCOPED_TRACE(mistakeName(mistake));
        EXPECT_EQ(stagesSeen(Flow::Full, mistake), 7u);
    }
}

TEST(DetectionTest, ABrokenSensorIsNotTakenForAMovingOne) {
    RecordingOptions options;
    options.flow = Flow::FourSteps;
    options.perfect = true;
    for (const Fault fault : {Fault::Noisy, Fault::WrongMounting, Fault::GyroScale10,
                              Fault::EllipticMag, Fault::Heading30}) {
        SCOPED_TRACE(faultName(fault));
        options.fault = fault;
        EXPECT_EQ(StageWatcher(record(options)).stageEnds().size(), 4u);
    }
}

}  // namespace
}  // namespace tavocal::simulator
