#include "process/NewMotionProcess.h"

#include <gtest/gtest.h>

#include <map>

#include "sensors/SensorFactory.h"
#include "support/FakeRun.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"

namespace tavocal::test {

using enum FlowType;
using Times = std::vector<double>;

// A device in the hand of a test. Its indicators, named by their initials, show what they are told
// to, every 10 ms from 0 ms on.
struct HeldDevice {
    HeldDevice(FlowType flow, const std::string& indicators) : run(flow), process(flow) {
        for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
            values[name[0]] = {0, 0, name[0] == 'A' ? 1.0 : 0.0};
            if (indicators.find(name[0]) != std::string::npos) {
                sensors[name[0]] = makeNamedSensor(name);
                sensors[name[0]]->setManager(&run);
                process.setStageIndicator(sensors[name[0]]);
            }
        }
        process.buildStages();
    }

    // From the next sample on; `shake` is added to every other sample and taken from the rest.
    HeldDevice& shows(char sensor, const Vector& value, double shake = 0.0) {
        values[sensor] = value;
        shakes[sensor] = shake;
        return *this;
    }
    // Lets time go on. Each sensor is by `later` behind the one before.
    HeldDevice& until(double end, double later = 0.0) {
        for (; time <= end; time += 10.0, parity = -parity) {
            double t = time;
            for (const auto& [letter, sensor] : sensors) {
                const Sample sample = {t, values[letter] + Vector{parity * shakes[letter], 0, 0}};
                sensor->dataRecieved(sample);
                process.CalibrationControl(sample);
                ends.resize(ends.size() + (std::exchange(process.canMoveNext, false) ? 1 : 0), t);
                t += later;
            }
        }
        return *this;
    }

    FakeRun run;
    NewMotionProcess process;
    std::map<char, std::shared_ptr<InertialSensor>> sensors;
    Times ends;  // when each stage was over
    std::map<char, Vector> values;
    std::map<char, double> shakes;
    double time = 0.0, parity = 1.0;
};

// Without a gyroscope there are no turns to see in the Full flow.
TEST(MotionStages, IndicatorsDecideWhatTheFlowIsMadeOf) {
    const std::string north = "UP, Y axis directed to North";
    const std::tuple<FlowType, std::string, std::size_t, std::string> rows[] = {
        {Full, "AG", 7, north},    {Full, "A", 4, north},
        {FourSteps, "A", 4, "UP"}, {MagAccuracyTest, "AM", 4, north},
        {Minimal, "GM", 1, north}, {Minimal, "AG", 1, "UP"}};
    for (const auto& [flow, indicators, count, up] : rows) {
        HeldDevice device(flow, indicators);
        EXPECT_EQ(device.process.segmentTimes, Times(2 * count, 0.0));
        const std::string text = "Step 1 out of " + std::to_string(count) +
                                 ".\nPlace the device screen's Z axis directed " + up + "\nHold";
        EXPECT_EQ(device.process.getInstructions(true).substr(0, text.size()), text);
    }
}

// Four positions, left 2.5 s one after the other; before that, `trembling` moves by what counts as
// still. The stages grow until a second reaches into either motion.
TEST(NewMotionProcess, StagesReachToTheMotionThatEndsThem) {
    const std::tuple<FlowType, std::string, char, double> rows[] = {
        {FourSteps, "AG", 'A', 1300},      {FourSteps, "AG", 'G', 1300},
        {FourSteps, "AM", 'M', 1300},      {FourSteps, "AGM", 'M', 1500},
        {MagAccuracyTest, "M", 'A', 1500}, {Full, "A", 'M', 1500}};
    for (const auto& [flow, indicators, trembling, firstEnd] : rows) {
        HeldDevice device(flow, indicators);
        const char mover = flow == MagAccuracyTest ? 'M' : 'A';
        device.until(2300).shows(trembling, {0, 0.0001, trembling == 'A' ? 1.0 : 0.0});
        device.until(2500).shows(mover, {400, 0, 0}).until(5000).shows(mover, {0, 400, 0});
        device.until(7500).shows(mover, {400, 0, 0}).until(9000);
        EXPECT_EQ(device.ends, (Times{1100, 3610, 6110, 8610}));
        const Times expected = {100, firstEnd, 2610, 3910, 5110, 6410, 7610, 8610};
        EXPECT_EQ(device.process.segmentTimes, expected) << indicators << trembling;
    }
}

// Turns of 200 degrees in 2 s. Only the stages in front of a turn are lengthened.
TEST(NewMotionProcess, FullFlowGoesThroughFourPositionsAndThreeTurns) {
    HeldDevice device(Full, "AG");
    device.until(2500).shows('G', {0, 0, 100}).until(4500).shows('G', {0, 0, 0});
    device.until(7000).shows('A', {0, 1, 0});
    device.until(9400).shows('G', {0, 100, 0}).until(11400).shows('G', {0, 0, 0});
    device.until(13900).shows('A', {1, 0, 0});
    device.until(16300).shows('G', {-100, 0, 0}).until(18300).shows('G', {0, 0, 0});
    device.until(20800).shows('A', {0, -1, 0}).until(30000);
    EXPECT_EQ(device.ends, (Times{1100, 5510, 8010, 12410, 14910, 19310, 21810}));
    EXPECT_EQ(device.process.segmentTimes, (Times{100, 1500, 4510, 5510, 7010, 8310, 11410, 12410,
                                                  13910, 15210, 18310, 19310, 20810, 21810}));
}

// What the gyroscope shows at rest is taken anew before each turn, which then counts on from what
// it showed at rest behind the turn before. A step counts again at another sensor's sample that is
// 1 ms later. Without a gyroscope the field tells of the turn; what it did before counts for
// nothing.
TEST(NewMotionProcess, TurnsAreSeen) {
    HeldDevice biased(Full, "AG");
    biased.shows('G', {0, 0, 50}).until(30000).shows('G', {0, 0, 150}).until(32000);
    biased.shows('G', {0, 0, 50}).until(34500).shows('A', {1, 0, 0}).shows('G', {0, 0, -50});
    biased.until(69000).shows('G', {0, 0, 50}).until(70500).shows('G', {0, 0, -50}).until(73000);
    EXPECT_EQ(biased.ends, (Times{1100, 33010, 35510, 71510}));
    for (const auto& [later, turned, end] :
         {std::tuple(0.99, 3400.0, 4410.99), std::tuple(1.0, 2900.0, 3911.0)}) {
        HeldDevice device(Full, "AG");
        device.until(2400, later).shows('G', {0, 0, 201}).until(turned, later);
        EXPECT_EQ(device.shows('G', {0, 0, 0}).until(9000, later).ends, (Times{1100, end}));
    }
    HeldDevice device(Full, "AM");
    device.shows('M', {0, 900, 0}).until(90).shows('M', {0, 300, 0}).until(5000);
    EXPECT_EQ(device.shows('M', {0, 500, 0}).until(8000).ends, (Times{1100}));
    EXPECT_EQ(device.shows('M', {0, 500.5, 0}).until(10000).ends, (Times{1100, 9070}));
}

TEST(NewMotionProcess, OneSensorTellsThatThePositionWasLeft) {
    const std::tuple<FlowType, char, Vector, Vector, Times> rows[] = {
        {FourSteps, 'A', {0, 0, 0}, {0, 0, -0.01}, {1100, 6110}},
        {FourSteps, 'M', {900, 0, 0}, {999, 0, 0}, {1100}},
        {MagAccuracyTest, 'M', {0, 300, 0}, {0, 300.5, 0}, {1100, 6110}},
        {MagAccuracyTest, 'A', {0, 9, 0}, {0, -9, 0}, {1100}}};
    for (const auto& [flow, sensor, inside, outside, ends] : rows) {
        HeldDevice device(flow, "AM");
        device.until(2000).shows(sensor, inside).until(5000).shows(sensor, outside);
        EXPECT_EQ(device.until(8000).ends, ends) << sensor;
    }
}

// All but a magnetometer beside a gyroscope, at first by the limits of their classes and later by
// what they showed in the first stage.
TEST(NewMotionProcess, IndicatorsMustBeStill) {
    const std::tuple<std::string, char, double, std::size_t> rows[] = {
        {"A", 'A', 0.0149, 1}, {"AG", 'G', 4.9, 1},  {"AG", 'G', 5.1, 0},    {"AM", 'M', 29.9, 1},
        {"AM", 'M', 30.1, 0},  {"AGM", 'M', 999, 1}, {"AGM", 'A', 0.0151, 0}};
    for (const auto& [indicators, sensor, shake, stages] : rows) {
        HeldDevice device(Full, indicators);
        device.shows(sensor, {0, 0, 0}, shake).until(3000);
        EXPECT_EQ(device.ends.size(), stages) << indicators << shake;
    }
    for (const auto& [shake, stages] : {std::pair(0.0059, 2U), std::pair(0.0061, 1U)}) {
        HeldDevice device(FourSteps, "A");
        device.shows('A', {0, 0, 1}, 0.004).until(2000).shows('A', {0, 0, -1}, shake).until(5000);
        EXPECT_EQ(device.ends.size(), stages);
    }
}

// The first stage grows over the motion behind it, but for a kick in time. Without one it would
// grow into the second.
TEST(NewMotionProcess, StageMustNotGrowIntoTheNextOne) {
    const auto run = [](double kick) {
        HeldDevice device(FourSteps, "A");
        device.until(1500).shows('A', {0, 0, -1}).until(kick).shows('A', {0, 0, 5}).until(4350);
        device.shows('A', {0, 0, 50}).until(4360).shows('A', {0, 0, 5}).until(6900);
        device.shows('A', {0, 0, 9}).until(9000);
        return device.process.segmentTimes;
    };
    EXPECT_EQ(run(3390), (Times{100, 2300, 2300, 3300, 4500, 5900, 7010, 8010}));
    EXPECT_EQ(failureOf([&] { run(3400); }), "segmentation error");
}

// The minimal flow needs any, and one second whatever the device does.
TEST(NewMotionProcess, TakesWhatTheFlowNeeds) {
    HeldDevice device(Minimal, "G");
    EXPECT_EQ(device.shows('G', {0, 0, 0}, 999).until(990).process.stagesDone, -1);
    EXPECT_EQ(device.until(3000).ends, (Times{1000}));
    EXPECT_EQ(device.process.segmentTimes, (Times{0, 0}));
    for (const auto& [flow, needed] : std::map<FlowType, std::string>{
             {Full, "A"}, {FourSteps, "A"}, {Minimal, "AGM"}, {MagAccuracyTest, "M"}}) {
        std::string enough;
        for (const std::string name : {"Accelerometer", "Gyroscope", "Magnetometer"}) {
            NewMotionProcess process(flow);
            enough += process.setStageIndicator(makeNamedSensor(name)) ? name.substr(0, 1) : "";
            EXPECT_TRUE(process.isStageIndicator(*makeNamedSensor(name)));
        }
        EXPECT_EQ(enough, needed);
    }
    NewMotionProcess process(Full);
    EXPECT_EQ(failureOf([&] { process.setStageIndicator(makeSensor({0x41})); }),
              "AmbientLightSensor is invalid type of stageIndicator");
    process.currentStep = 1;
    EXPECT_FALSE(process.needsUserInput());
    EXPECT_EQ(failureOf([&] { process.readUserInput(); }), "Internal error");
}

}  // namespace tavocal::test
