#include "process/AlsProcess.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

#include "base/Failures.h"
#include "sensors/LightRun.h"
#include "support/TempFolder.h"

namespace tavocal::test {
namespace {

const std::string kTooClose = "Invalid delta between light levels. Minimum delta is 300";
const std::string kTurnsAround =
    "Invalid delta between light levels. levels should be ascending or descending";
const std::string kNoChange = "A light level change was not detected for too long time";
const std::string kNotStable = "The light is not stable for too long time";

// The message of what `act` throws; empty if it throws nothing.
template <typename Failure, typename Action>
std::string messageOf(Action act) {
    try {
        act();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

class AlsProcessTest : public testing::Test {
  protected:
    // An operator who types `lines` and then closes the input.
    void type(const std::string& lines) {
        ASSERT_NE(std::freopen(folder.write("typed.txt", lines).c_str(), "rb", stdin), nullptr);
    }

    // Constructs the process as the run does. The console's text goes to `printed`.
    std::string prepareInteractive(const std::string& typed) {
        process = std::make_shared<AlsProcess>(true);
        run.interactive = true;
        type(typed);
        testing::internal::CaptureStdout();
        const std::string failure = messageOf<CalibrationException>([this] { process->prepare(); });
        printed = testing::internal::GetCapturedStdout();
        return failure;
    }

    void prepareAutomatic(const std::string& config) {
        process = std::make_shared<AlsProcess>(false);
        process->loadConfiguration(folder.write("als.txt", config));
        process->prepare();
        addSensor(0);
        process->setStageIndicator(sensors.at(0));
    }

    void addSensor(std::uint8_t instance) {
        sensors.push_back(run.addSensor(instance));
        process->addCalibratedSensor(sensors.back());
    }

    // Asks for each of the levels in turn, up to the first failure.
    std::string failureOfLevels(const std::string& typed, int count = 3) {
        prepareInteractive(std::to_string(count) + "\n" + typed);
        return messageOf<CalibrationException>([&] {
            for (process->currentStep = 0; process->currentStep < count; ++process->currentStep) {
                process->readUserInput();
            }
        });
    }

    // One sample of the indicator, at 50 per second. True if it ended a stage.
    bool deliver(double value) {
        const Sample sample = lightSample(time += 20.0, value);
        if (sensors[0]->dataRecieved(sample)) {
            ++accepted;
            process->CalibrationControl(sample);
        }
        return std::exchange(process->canMoveNext, false);
    }

    // Delivers until a stage ends, and gives the number of samples that this took; 0 if it takes
    // more than `most`.
    int deliverUntilStage(const std::function<double(int)>& light, int most) {
        for (int i = 1; i <= most; ++i) {
            if (deliver(light(i))) {
                return i;
            }
        }
        return 0;
    }

    void passFirstStage(double level) {
        ASSERT_EQ(deliverUntilStage([&](int) { return level; }, 1000), 102)
            << "100 accepted samples, behind two that only fill the filter";
        accepted = 0;
    }

    // Delivers until the process gives up, at most `most` samples; `accepted` counts them.
    std::string failureWhile(const std::function<double(int)>& light, int most) {
        accepted = 0;
        return messageOf<SamplingException>([&] { deliverUntilStage(light, most); });
    }

    TempFolder folder;
    LightRun run;
    std::shared_ptr<AlsProcess> process;
    std::vector<std::shared_ptr<AmbientLight>> sensors;
    std::string printed;
    double time = 0.0;
    int accepted = 0;
};

// A light that swings between two values around `mean`, which makes its deviation `swing`.
std::function<double(int)> flicker(double mean, double swing) {
    return [=](int i) { return i % 2 == 0 ? mean + swing : mean - swing; };
}

// ---- Dialogue ----

TEST_F(AlsProcessTest, AsksForTheNumberOfStages) {
    EXPECT_EQ(prepareInteractive("2\r\n"), "");
    EXPECT_EQ(printed,
              "Enter the number of steps to calibrate, valid number should be bigger than 1\n");
    EXPECT_EQ(process->stageCount, 2);
    EXPECT_EQ(process->stagesDone, 0);
    EXPECT_EQ(process->runType, RunCommand::CalibrateAls);
    EXPECT_EQ(process->lightSegments, std::vector<int>(4, 0));
    EXPECT_TRUE(process->isInteractive());
    EXPECT_TRUE(process->needsUserInput());
    EXPECT_EQ(process->requiredIndicatorTypes(), std::vector<std::string>{"AmbientLightSensor"});
    EXPECT_EQ(prepareInteractive("1"), "");
}

TEST_F(AlsProcessTest, RefusesBadNumbersOfStages) {
    for (const std::string typed : {"three\n", "2 3\n", "99999999999\n"}) {
        EXPECT_EQ(prepareInteractive(typed), "Invalid number was entered") << typed;
    }
    for (const std::string typed : {"0\n", "-1\n", "\n", "", "2147483647\n"}) {
        EXPECT_EQ(prepareInteractive(typed), "Invalid number of stages") << typed;
    }
}

TEST_F(AlsProcessTest, ReadsTheLevelsOfTheOperator) {
    prepareInteractive("3\n500\r\n 800\n1100");
    for (const std::string level : {"500", " 800", "1100"}) {
        EXPECT_EQ(process->getInstructions(false),
                  "Please change the light level to the next level. When done, enter the light "
                  "level as read by your light meter");
        EXPECT_EQ(process->readUserInput(), level);
        ++process->currentStep;
    }
}

TEST_F(AlsProcessTest, ChecksTheLevelsOfTheOperator) {
    EXPECT_EQ(failureOfLevels("500\n800\n1100\n"), "");
    EXPECT_EQ(failureOfLevels("1100\n800\n500\n"), "");
    EXPECT_EQ(failureOfLevels("1\n301\n601\n"), "");
    EXPECT_EQ(failureOfLevels("500\n799\n"), kTooClose);
    EXPECT_EQ(failureOfLevels("500\n800\n600\n"), kTooClose);
    EXPECT_EQ(failureOfLevels("500\n800\n800\n"), kTooClose);
    EXPECT_EQ(failureOfLevels("500\n800\n300\n"), kTurnsAround);
    EXPECT_EQ(failureOfLevels("800\n500\n900\n"), kTurnsAround);
    EXPECT_EQ(failureOfLevels("2147483647\n1\n1000\n"), kTurnsAround);
    EXPECT_EQ(failureOfLevels("0\n"), "Invalid light value 0. Value should be bigger than 1(lux)");
    EXPECT_EQ(failureOfLevels("500\n-2147483648\n"),
              "Invalid light value -2147483648. Value should be bigger than 1(lux)");
    EXPECT_EQ(failureOfLevels("500\nbright\n"), "Invalid number was entered");
    EXPECT_EQ(failureOfLevels("500\n800\n"),
              "Invalid light value 0. Value should be bigger than 1(lux)")
        << "the input ends";
}

TEST_F(AlsProcessTest, TakesTheLevelsOfTheFile) {
    prepareAutomatic("values=500,1000\n");
    EXPECT_EQ(process->stageCount, 2);
    EXPECT_FALSE(process->isInteractive());
    for (const std::string level : {"500", "1000"}) {
        EXPECT_EQ(process->getInstructions(true),
                  "Please change the light level to " + level + " lux");
        EXPECT_EQ(process->readUserInput(), level);
        ++process->currentStep;
    }
    const std::string failure = "Invalid number of light values";
    EXPECT_EQ(messageOf<CalibrationException>([this] { process->getInstructions(true); }), failure);
    EXPECT_EQ(messageOf<CalibrationException>([this] { process->readUserInput(); }), failure);

    const auto replayed = run.addSensor();
    process->passLevelsToSensor(*replayed);
    EXPECT_EQ(replayed->lightLevels, (std::vector<int>{500, 1000}));
}

TEST_F(AlsProcessTest, NeedsLevelsInAutomaticRuns) {
    AlsProcess automatic(false);
    EXPECT_EQ(messageOf<CalibrationException>([&] { automatic.prepare(); }),
              "Invalid number of stages");
}

TEST_F(AlsProcessTest, FollowsTheIndicatorAlone) {
    AlsProcess automatic(false);
    const auto light = run.addSensor();
    EXPECT_FALSE(automatic.isStageIndicator(*light));
    EXPECT_TRUE(automatic.setStageIndicator(light));
    EXPECT_TRUE(automatic.isStageIndicator(*run.addSensor()));
    EXPECT_FALSE(automatic.isStageIndicator(*run.addSensor(1)));
    EXPECT_EQ(messageOf<CalibrationException>([&] {
                  automatic.setStageIndicator(makeSensor({kAccelerometerType, 0, 0, 0, 2}));
              }),
              "Accelerometer is invalid type of stageIndicator");
}

// ---- Detection ----

TEST_F(AlsProcessTest, MarksTheNewestEightySamplesOfEachLevel) {
    prepareAutomatic("values=500,1000\n");
    passFirstStage(480.0);
    EXPECT_EQ(process->stagesDone, 1);
    EXPECT_EQ(process->lightSegments, (std::vector<int>{20, 99, 0, 0}));
    for (int i = 0; i < 30; ++i) {
        EXPECT_FALSE(deliver(480.0));
    }
    EXPECT_EQ(deliverUntilStage([](int) { return 970.0; }, 1000), 101)
        << "the first stored median of the window is still that of the old level";
    EXPECT_EQ(process->lightSegments, (std::vector<int>{20, 99, 151, 230}));
    EXPECT_EQ(process->stagesDone, 2);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_FALSE(deliver(i)) << "nothing follows the last stage";
    }
}

TEST_F(AlsProcessTest, CountsOnlyChangesAboveFiveLux) {
    prepareAutomatic("values=500,1000\n");
    passFirstStage(500.0);
    EXPECT_EQ(failureWhile([](int i) { return i % 2 == 0 ? 505.0 : 495.0; }, 300), kNoChange);

    sensors.clear();
    prepareAutomatic("values=500,1000\n");
    passFirstStage(500.0);
    EXPECT_EQ(deliverUntilStage([](int) { return 505.001; }, 300), 100);
}

// The newest sample of a stage doesn't count for the level that the next one must leave.
TEST_F(AlsProcessTest, ComparesWithTheMeanLessItsNewestSample) {
    prepareAutomatic("values=500,1000\n");
    for (int i = 1; i <= 100; ++i) {
        deliver(500.0);
    }
    deliver(508.0);
    ASSERT_TRUE(deliver(508.0)) << "the 100th stored value is 508";
    ASSERT_EQ(sensors[0]->bufferedData.back().values[0], 508.0);
    EXPECT_EQ(deliverUntilStage([](int) { return 505.05; }, 100), 100)
        << "too near to 500.1, but not to 500";
}

TEST_F(AlsProcessTest, GivesUpWhenTheLightDoesNotChange) {
    for (const int delay : {5, 3, 50}) {
        sensors.clear();
        prepareAutomatic("values=500,1000\ndelay_time=" + std::to_string(delay) + "\n");
        passFirstStage(500.0);
        EXPECT_EQ(failureWhile([](int) { return 500.0; }, 10000), kNoChange);
        // The running mean of the intervals comes close to 20 ms from below, so that the rate is
        // a little above 50.
        EXPECT_GE(accepted, 50 * delay + 1);
        EXPECT_LE(accepted, 50 * delay + 2);
    }
    sensors.clear();
    prepareAutomatic("values=500,1000\n");
    passFirstStage(500.0);
    failureWhile([](int) { return 500.0; }, 10000);
    EXPECT_EQ(accepted, 251);
}

TEST_F(AlsProcessTest, ADeviationOfOneLuxIsStable) {
    prepareAutomatic("values=500\n");
    EXPECT_EQ(deliverUntilStage(flicker(500.0, 1.0), 1000), 102);
}

TEST_F(AlsProcessTest, GivesUpAfter251UnstableWindows) {
    for (const double swing : {1.0001, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        sensors.clear();
        prepareAutomatic("values=500\n");
        EXPECT_EQ(failureWhile(flicker(500.0, swing), 1000), kNotStable);
        EXPECT_EQ(accepted, 350) << swing;
        EXPECT_EQ(process->stagesDone, 0);
    }
}

TEST_F(AlsProcessTest, The250thUnstableWindowMayStillBeFollowedByAStableOne) {
    prepareAutomatic("values=500\n");
    // The steady light begins so that the 350th accepted sample completes its first full window.
    const auto light = [](int i) { return i <= 252 ? flicker(500.0, 30.0)(i) : 500.0; };
    EXPECT_EQ(deliverUntilStage(light, 1000), 352);
    EXPECT_EQ(process->lightSegments, (std::vector<int>{270, 349}));
}

TEST_F(AlsProcessTest, StagesStartWithFreshCounts) {
    prepareAutomatic("values=500,1000,1500\n");
    const auto late = [](double level) {
        return [=](int i) { return i <= 200 ? flicker(level, 30.0)(i) : level; };
    };
    EXPECT_GT(deliverUntilStage(late(500.0), 1000), 290);
    EXPECT_GT(deliverUntilStage(late(1000.0), 1000), 290);
    EXPECT_GT(deliverUntilStage(late(1500.0), 1000), 290);
    EXPECT_EQ(process->stagesDone, 3);
}

TEST_F(AlsProcessTest, DropsSamplesUntilTheOperatorAnswers) {
    prepareInteractive("2\n");
    addSensor(0);
    addSensor(1);
    process->setStageIndicator(sensors[0]);
    sensors[0]->stageChanged("500");
    sensors[1]->stageChanged("500");
    EXPECT_EQ(deliverUntilStage([](int) { return 500.0; }, 1000), 102);
    EXPECT_TRUE(sensors[0]->waitingForInput);
    EXPECT_TRUE(sensors[1]->waitingForInput);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_FALSE(deliver(700.0));
    }
    sensors[0]->stageChanged("900");
    EXPECT_EQ(deliverUntilStage([](int) { return 900.0; }, 1000), 101);
    EXPECT_EQ(sensors[0]->getSampleCount(), 201u);
    EXPECT_EQ(process->lightSegments, (std::vector<int>{20, 99, 121, 200}));
}

// ---- End of the collection ----

class AlsFinishTest : public AlsProcessTest {
  protected:
    // Light sensors with that many samples, the first one primary unless `firstInstance` is 1.
    void finish(std::initializer_list<int> counts, std::uint8_t firstInstance = 0) {
        process = std::make_shared<AlsProcess>(false);
        process->lightSegments = {500, 579, 700, 779};
        sensors.clear();
        for (const int count : counts) {
            addSensor(sensors.empty() ? firstInstance
                                      : static_cast<std::uint8_t>(1 - firstInstance));
            for (int i = 0; i < count; ++i) {
                sensors.back()->bufferedData.push_back(lightSample(i, i));
            }
        }
        process->finishCollection();
    }

    double firstValue(std::size_t sensor) const {
        return sensors[sensor]->bufferedData.at(0).values[0];
    }

    const std::vector<int> untouched{500, 579, 700, 779};
    const std::vector<int> tenEarlier{490, 569, 690, 769};
};

TEST_F(AlsFinishTest, OneSensorStaysAsItIs) {
    finish({1000});
    EXPECT_EQ(sensors[0]->getSampleCount(), 1000u);
    EXPECT_EQ(process->lightSegments, untouched);
    finish({1000}, 1);
    EXPECT_EQ(sensors[0]->getSampleCount(), 1000u);
    EXPECT_EQ(process->lightSegments, untouched);
    finish({});
    EXPECT_EQ(process->lightSegments, untouched);
}

TEST_F(AlsFinishTest, CutsALongerPrimaryAndItsSegments) {
    finish({1000, 990});
    EXPECT_EQ(sensors[0]->getSampleCount(), 990u);
    EXPECT_EQ(firstValue(0), 10.0);
    EXPECT_EQ(firstValue(1), 0.0);
    EXPECT_EQ(process->lightSegments, tenEarlier);
    finish({990, 1000}, 1);
    EXPECT_EQ(sensors[1]->getSampleCount(), 990u);
    EXPECT_EQ(firstValue(0), 0.0);
    EXPECT_EQ(firstValue(1), 10.0);
    EXPECT_EQ(process->lightSegments, tenEarlier) << "the secondary sensor stands first";
}

TEST_F(AlsFinishTest, CutsALongerSecondaryAlone) {
    finish({990, 1000});
    EXPECT_EQ(sensors[1]->getSampleCount(), 990u);
    EXPECT_EQ(firstValue(0), 0.0);
    EXPECT_EQ(firstValue(1), 10.0);
    EXPECT_EQ(process->lightSegments, untouched);
}

TEST_F(AlsFinishTest, SensorsWithoutSamplesDoNoHarm) {
    finish({0, 1000});
    EXPECT_EQ(sensors[0]->getSampleCount(), 0u);
    EXPECT_EQ(sensors[1]->getSampleCount(), 1000u);
    finish({1000, 0});
    EXPECT_EQ(sensors[0]->getSampleCount(), 0u);
}

TEST_F(AlsProcessTest, CalibratesWhatItHasFound) {
    prepareAutomatic("values=500,1000,2000\n");
    for (const double level : {500.0, 1000.0, 2000.0}) {
        ASSERT_GT(deliverUntilStage([&](int) { return level / 2.355; }, 1000), 100);
    }
    run.segments = process->lightSegments;
    process->passLevelsToSensor(*sensors[0]);
    testing::internal::CaptureStdout();
    sensors[0]->calibrate();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(sensors[0]->multiplier, 235.0);
}

}  // namespace
}  // namespace tavocal::test
