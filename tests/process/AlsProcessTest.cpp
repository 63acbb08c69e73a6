#include "process/AlsProcess.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <tuple>

#include "sensors/SensorFactory.h"
#include "sensors/light/AmbientLight.h"
#include "support/FakeRun.h"
#include "support/Outcome.h"
#include "support/TempFolder.h"
#include "vocabulary/SensorTypes.h"

namespace tavocal::test {
namespace {

using Light = std::function<double(int)>;

const std::string kNoChange = "A light level change was not detected for too long time";
const std::string kNotStable = "The light is not stable for too long time";

class AlsProcessTest : public testing::Test {
  protected:
    // An operator who types `typed` and then closes the input.
    std::string prepareInteractive(const std::string& typed) {
        process = std::make_unique<AlsProcess>(true);
        run.interactive = true;
        EXPECT_NE(std::freopen(folder.write("typed.txt", typed).c_str(), "rb", stdin), nullptr);
        std::string failure;
        printedBy([&] { failure = failureOf([this] { process->prepare(); }); });
        return failure;
    }

    void prepareAutomatic(const std::string& config) {
        process = std::make_unique<AlsProcess>(false);
        process->loadConfiguration(folder.write("als.txt", config));
        process->prepare();
        sensors.clear();
        addSensor(0);
        process->setStageIndicator(sensors[0]);
    }

    void addSensor(std::uint8_t instance) {
        const LUID luid{kAmbientLightType, 0, 0, instance, kStaticFlag};
        sensors.push_back(std::make_shared<AmbientLight>(luid));
        sensors.back()->setManager(&run);
        process->addCalibratedSensor(sensors.back());
    }

    // One sample of the indicator, at 50 per second. True if it ended a stage.
    bool deliver(double value) {
        const Sample sample{time += 20.0, Vector{value}};
        if (sensors[0]->dataRecieved(sample)) {
            ++accepted;
            process->CalibrationControl(sample);
        }
        return std::exchange(process->canMoveNext, false);
    }

    // Delivers until a stage ends or the process gives up, at most 10,000 samples. `accepted`
    // counts them.
    std::string runStage(const Light& light) {
        accepted = 0;
        return messageOf<SamplingException>([&] {
            for (int i = 1; i <= 10000 && !deliver(light(i)); ++i) {
            }
        });
    }

    TempFolder folder;
    FakeRun run{FlowType::Full, RunCommand::CalibrateAls};
    std::unique_ptr<AlsProcess> process;
    std::vector<std::shared_ptr<AmbientLight>> sensors;
    double time = 0.0;
    int accepted = 0;
};

Light steady(double level) {
    return [=](int) { return level; };
}

// Swings around 500, which makes its deviation `swing`, and holds still behind `count` samples.
Light flicker(double swing, int count = 10000) {
    return [=](int i) { return i > count ? 500.0 : i % 2 == 0 ? 500.0 + swing : 500.0 - swing; };
}

// ---- Dialogue ----

TEST_F(AlsProcessTest, AsksForTheNumberOfStages) {
    const std::string bad = "Invalid number of stages";
    using Row = std::pair<const char*, std::string>;
    for (const auto& [typed, failure] :
         {Row{"2\r\n", kNoFailure}, Row{"1", kNoFailure},
          Row{"2 3\n", "Invalid number was entered"}, Row{"0\n", bad}, Row{"-1\n", bad},
          Row{"2147483647\n", bad}}) {
        EXPECT_EQ(prepareInteractive(typed), failure) << typed;
    }
    EXPECT_EQ(failureOf([&] { AlsProcess(false).prepare(); }), bad);
}

TEST_F(AlsProcessTest, ReadsTheLevelsOfTheOperator) {
    EXPECT_EQ(AlsProcess(true).stageCount, 3);
    prepareInteractive("4\n500\r\n 800\nbright");
    EXPECT_EQ(process->stageCount, 4);
    EXPECT_EQ(process->lightSegments, std::vector<int>(8, 0));
    for (const std::string level : {"500", " 800"}) {
        EXPECT_EQ(process->readUserInput(), level);
        ++process->currentStep;
    }
    EXPECT_EQ(failureOf([this] { process->readUserInput(); }), "Invalid number was entered");
}

TEST_F(AlsProcessTest, TheFileTellsALevelForEachStage) {
    prepareAutomatic("values=500,1000\n");
    process->currentStep = 2;
    EXPECT_EQ(failureOf([this] { process->readUserInput(); }), "Invalid number of light values");
}

TEST_F(AlsProcessTest, FollowsTheIndicatorAlone) {
    prepareAutomatic("values=500\n");
    addSensor(1);
    EXPECT_TRUE(process->isStageIndicator(*sensors[0]));
    EXPECT_FALSE(process->isStageIndicator(*sensors[1]));
    const auto other = makeSensor({kAccelerometerType, 0, 0, 0, 2});
    EXPECT_EQ(failureOf([&] { process->setStageIndicator(other); }),
              "Accelerometer is invalid type of stageIndicator");
}

// ---- Detection ----

TEST_F(AlsProcessTest, MarksTheNewestEightySamplesOfEachLevel) {
    prepareAutomatic("values=500,1000\n");
    EXPECT_EQ(runStage(steady(480.0)), kNoFailure);
    EXPECT_EQ(accepted, 100);
    EXPECT_EQ(process->lightSegments, (std::vector<int>{20, 99, 0, 0}));
    // The first median that is stored then is still that of the old level.
    EXPECT_EQ(runStage([](int i) { return i <= 30 ? 480.0 : 970.0; }), kNoFailure);
    EXPECT_EQ(accepted, 131);
    EXPECT_EQ(process->lightSegments, (std::vector<int>{20, 99, 151, 230}));
    EXPECT_EQ(runStage([](int i) { return i; }), kNoFailure);  // nothing follows the last stage
    EXPECT_EQ(accepted, 10000);
}

TEST_F(AlsProcessTest, JudgesEachStageByItsLimits) {
    using Row = std::tuple<const char*, int, std::vector<Light>, int, std::string>;
    const Light rise = [](int i) { return i <= 100 ? 500.0 : 508.0; };
    const Light late = flicker(30.0, 200);
    const Row rows[] = {
        {"stable at 1 lux", 5, {flicker(1.0)}, 100, kNoFailure},
        {"not stable above", 5, {flicker(1.0001)}, 350, kNotStable},
        {"no number", 5, {flicker(std::nan(""))}, 350, kNotStable},
        {"stable after 250 windows", 5, {flicker(30.0, 252)}, 350, kNoFailure},
        {"one sample later", 5, {flicker(30.0, 253)}, 350, kNotStable},
        {"a change of 5 lux is none", 5, {steady(500.0), steady(505.0)}, 251, kNoChange},
        {"a change of more", 5, {steady(500.0), steady(494.999)}, 100, kNoFailure},
        // 508 is the 100th stored value of the first stage, whose mean is 500.1 with it.
        {"the newest sample is left out", 5, {rise, steady(505.05)}, 100, kNoFailure},
        {"no change in 3 s", 3, {steady(500.0), steady(500.0)}, 151, kNoChange},
        {"fresh counts", 5, {late, steady(600.0), late}, 300, kNoFailure},
    };
    for (const auto& [what, delay, stages, length, expected] : rows) {
        SCOPED_TRACE(what);
        time = 0.0;
        prepareAutomatic("values=500,1000,1500\ndelay_time=" + std::to_string(delay));
        std::string failure;
        for (const Light& light : stages) {
            failure = runStage(light);
        }
        EXPECT_EQ(failure, expected);
        EXPECT_EQ(accepted, length);  // of the last stage
    }
}

TEST_F(AlsProcessTest, AllSensorsWaitForTheOperatorsNextAnswer) {
    prepareInteractive("2\n");
    addSensor(0);
    addSensor(1);
    process->setStageIndicator(sensors[0]);
    sensors[0]->stageChanged("500");
    sensors[1]->waitingForInput = false;
    EXPECT_EQ(runStage(steady(500.0)), kNoFailure);
    EXPECT_TRUE(sensors[0]->waitingForInput && sensors[1]->waitingForInput);
}

// ---- End of the collection ----

TEST_F(AlsProcessTest, CutsAllSensorsToOneLength) {
    // Instance and sample count of each sensor; shift of the segments.
    using Row = std::pair<std::vector<std::pair<std::uint8_t, std::size_t>>, int>;
    for (const auto& [given, shift] :
         {Row{{{0, 1000}}, 0}, Row{{{1, 1000}}, 0}, Row{{{0, 1000}, {1, 990}}, 10},
          Row{{{1, 990}, {0, 1000}}, 10}, Row{{{0, 990}, {1, 1000}}, 0},
          Row{{{1, 1000}, {0, 990}}, 0}}) {
        process = std::make_unique<AlsProcess>(false);
        process->lightSegments = {500, 579};
        sensors.clear();
        for (const auto& [instance, count] : given) {
            addSensor(instance);
            sensors.back()->bufferedData.resize(count);
        }
        process->finishCollection();
        for (const auto& sensor : sensors) {
            EXPECT_EQ(sensor->getSampleCount(), sensors.size() == 1 ? 1000U : 990U);
        }
        EXPECT_EQ(process->lightSegments, (std::vector<int>{500 - shift, 579 - shift}));
    }
}

}  // namespace
}  // namespace tavocal::test
