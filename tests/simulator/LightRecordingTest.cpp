#include "simulator/LightRecording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "simulator/Arguments.h"
#include "simulator/Lamp.h"
#include "simulator/LightCommand.h"

namespace tavocal::simulator {
namespace {

constexpr std::size_t kWindow = 100;

// Mean and deviation of the `kWindow` readings that end with reading `last`.
struct Window {
    Window(const std::vector<Row>& rows, std::size_t last) {
        for (std::size_t i = last + 1 - kWindow; i <= last; ++i) {
            mean += rows[i].values[0] / kWindow;
        }
        for (std::size_t i = last + 1 - kWindow; i <= last; ++i) {
            deviation += std::pow(rows[i].values[0] - mean, 2.0) / kWindow;
        }
        deviation = std::sqrt(deviation);
    }

    double mean = 0.0;
    double deviation = 0.0;
};

std::size_t lastBefore(const std::vector<Row>& rows, double time) {
    const auto after =
        std::find_if(rows.begin(), rows.end(), [time](const Row& row) { return row.time > time; });
    return static_cast<std::size_t>(after - rows.begin()) - 1;
}

TEST(LampTest, ChangesWithoutAJumpAndSettles) {
    Lamp lamp(500.0, 0.8);
    lamp.changeTo(2000.0, 1.0);
    EXPECT_EQ(lamp.luxAt(0.999), 500.0);
    EXPECT_NEAR(lamp.luxAt(1.8), 2000.0, 10.0);
    EXPECT_NEAR(lamp.luxAt(5.0), 2000.0, 0.1);
    for (double t = 0.9; t < 3.0; t += 0.001) {
        ASSERT_LT(std::abs(lamp.luxAt(t) - lamp.luxAt(t - 0.001)), 4.0) << "at " << t;
    }
}

// A level counts when 100 readings in a row deviate by no more than 1 lux, and the last 80 of them
// make its value; and the change to the next one must come within the rig's delay.
TEST(LightRecordingTest, EachLevelIsStillLongEnough) {
    LightOptions options;
    options.secondary = true;
    for (const std::uint64_t seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(seed);
        options.seed = seed;
        const LightRecording recording = recordLight(options);
        for (const auto& [name, rows] : recording.rows) {
            const double gain = name == "AmbientLightSensor" ? 0.5 : 0.8;
            for (std::size_t i = 0; i < recording.stages.size(); ++i) {
                const StillStage& stage = recording.stages[i];
                const Window window(rows, lastBefore(rows, stage.end));
                EXPECT_LT(window.deviation, 0.8) << name;
                EXPECT_NEAR(window.mean, gain * options.levels[i], 1.0) << name;
                EXPECT_LT(stage.end - stage.begin, 1000.0 * options.delaySeconds);
            }
        }
    }
}

TEST(LightRecordingTest, FilesOfTheRigAndTheDump) {
    LightOptions options;
    options.levels = {2000, 1000};
    options.secondary = true;
    const LightRecording recording = recordLight(options);
    EXPECT_EQ(recording.settingsText(), "values=2000,1000\ndelay_time=5\n");
    const std::string head =
        "LUID=0041000100000102\nFORMFACTOR=2IN1\nHINGE=BOTTOM\n"
        "time[ms],AmbientLightSensor_2_0[lux]\n";
    EXPECT_EQ(recording.dumpText("AmbientLightSensor_2").substr(0, head.size()), head);
    EXPECT_NE(recording.truthText().find("AmbientLightSensor.multiplier=2\n"), std::string::npos);
    EXPECT_EQ(recordLight(options).dumpText("AmbientLightSensor"),
              recording.dumpText("AmbientLightSensor"));
}

TEST(LightRecordingTest, MistakesShow) {
    LightOptions options;
    const auto lastWindow = [&options](LightMistake mistake) {
        options.mistake = mistake;
        const LightRecording recording = recordLight(options);
        const std::vector<Row>& rows = recording.rows.at("AmbientLightSensor");
        return Window(rows, rows.size() - 1);
    };
    EXPECT_NEAR(lastWindow(LightMistake::None).mean, 1000.0, 1.0);
    EXPECT_NEAR(lastWindow(LightMistake::StuckLight).mean, 500.0, 1.0);
    EXPECT_GT(lastWindow(LightMistake::Unstable).deviation, 3.0);
    EXPECT_GT(lastWindow(LightMistake::CutShort).deviation, 10.0);
    EXPECT_EQ(lastWindow(LightMistake::Dark).mean, 0.0);
}

TEST(LightCommandTest, OptionsReachTheRecording) {
    EXPECT_FALSE(asksForLight({"--out", "als", "--flow", "full"}));
    const std::vector<std::string> arguments = {
        "--out", "x",        "--flow", "als",       "--levels", "1,2000",     "--gain",
        "0.25",  "--gain-2", "3",      "--mistake", "dark",     "--secondary"};
    ASSERT_TRUE(asksForLight(arguments));
    const LightOptions options = parseLightArguments(arguments).options;
    EXPECT_EQ(options.levels, (std::vector<int>{1, 2000}));
    EXPECT_EQ(options.gain, 0.25);
    EXPECT_EQ(options.secondaryGain, 3.0);
    EXPECT_EQ(options.mistake, LightMistake::Dark);
    EXPECT_TRUE(options.secondary);
}

TEST(LightCommandTest, WrongArgumentsAreNamed) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"--flow", "als"}, "The option --out is missing"},
        {{"--levels", "1,,2"}, "The value of --levels is not a whole number: "},
        {{"--levels", "1,2,"}, "The value of --levels is not a whole number: "},
        {{"--levels", "-1"}, "The value of --levels must lie between 0 and 1000000: -1"},
        {{"--gain", "0"}, "The value of --gain must lie between 0.000001 and 1000000: 0"},
        {{"--mistake", "half-turn"}, "There is no mistake half-turn with light"},
        {{"--field", "480"}, "Unknown option --field"},
        {{"--flow", "als", "--flow", "full"}, "Only one flow can be recorded at a time"},
    };
    for (const auto& [arguments, expected] : cases) {
        try {
            parseLightArguments(arguments);
            ADD_FAILURE() << "accepted instead of: " << expected;
        } catch (const ArgumentError& error) {
            EXPECT_EQ(error.what(), expected);
        }
    }
}

}  // namespace
}  // namespace tavocal::simulator
