#include "simulator/RecordCommand.h"

#include <gtest/gtest.h>

#include "platform/Files.h"
#include "simulator/Arguments.h"
#include "support/TempFolder.h"

namespace tavocal::simulator {
namespace {

using Words = std::vector<std::string>;

TEST(RecordCommandTest, OptionsReachTheRecording) {
    const RecordRequest request = parseRecordArguments({"--flow",
                                                        "foursteps",
                                                        "--seed",
                                                        "17",
                                                        "--out",
                                                        "dir",
                                                        "--rate",
                                                        "50",
                                                        "--noise-acc",
                                                        "0.01",
                                                        "--field",
                                                        "512.5",
                                                        "--dip",
                                                        "-63",
                                                        "--secondary",
                                                        "--form-factor",
                                                        "MID",
                                                        "--hinge",
                                                        "LEFT",
                                                        "--perfect",
                                                        "--no-cross-axis",
                                                        "--sensors",
                                                        "AG",
                                                        "--hold",
                                                        "3",
                                                        "--turn",
                                                        "4.5",
                                                        "--mistake",
                                                        "silent-sensor",
                                                        "--mistake-stage",
                                                        "2",
                                                        "--faulty-sensor",
                                                        "A",
                                                        "--crlf",
                                                        "--mistake",
                                                        "spiky"});
    EXPECT_EQ(request.folder, "dir");
    EXPECT_TRUE(request.crlf);
    const RecordingOptions& options = request.options;
    EXPECT_EQ(options.flow, Flow::FourSteps);
    EXPECT_EQ(options.seed, 17u);
    EXPECT_EQ(options.rateHz, 50.0);
    EXPECT_EQ(options.noiseG, 0.01);
    EXPECT_EQ(options.fieldMg, 512.5);
    EXPECT_EQ(options.dipDegrees, -63.0);
    EXPECT_TRUE(options.secondary && options.perfect && !options.crossAxis);
    EXPECT_EQ(options.formFactor + options.hinge + options.sensors, "MIDLEFTAG");
    EXPECT_EQ(options.holdSeconds, 3.0);
    EXPECT_EQ(options.turnSeconds, 4.5);
    EXPECT_EQ(options.mistake, Mistake::SilentSensor);
    EXPECT_EQ(options.fault, Fault::Spiky);
    EXPECT_EQ(options.mistakeStep, 1u);
    EXPECT_EQ(options.silentSensor, SensorKind::Accelerometer);
}

TEST(RecordCommandTest, WrongArgumentsAreNamed) {
    const std::vector<std::pair<Words, std::string>> cases = {
        {{}, "The option --flow is missing"},
        {{"--flow", "full"}, "The option --out is missing"},
        {{"--flow", "fuller"}, "There is no flow fuller"},
        {{"--flow"}, "The option --flow needs a value"},
        {{"--flow", "--out", "x"}, "The option --flow needs a value"},
        {{"--out", "x", "--flwo", "full"}, "Unknown option --flwo"},
        {{"full"}, "Unknown option full"},
        {{"--rate", "fast"}, "The value of --rate is not a number: fast"},
        {{"--rate", "0"}, "The value of --rate must lie between 1 and 1000: 0"},
        {{"--rate", "nan"}, "The value of --rate must lie between 1 and 1000: nan"},
        {{"--hold", "1e9"}, "The value of --hold must lie between 0.1 and 120: 1e9"},
        {{"--noise-gyro", "-1"}, "The value of --noise-gyro must lie between 0 and 10000: -1"},
        {{"--seed", "1.5"}, "The value of --seed is not a whole number: 1.5"},
        {{"--seed", "99999999999999999999"},
         "The value of --seed is not a whole number: 99999999999999999999"},
        {{"--mistake", "clumsy"}, "There is no mistake clumsy"},
        {{"--sensors", "AX"}, "The sensors must be some of A, G and M: AX"},
        {{"--sensors", ""}, "The sensors must be some of A, G and M"},
        {{"--sensors", "AA"}, "The sensors must be some of A, G and M: AA"},
        {{"--faulty-sensor", "AG"}, "There is no sensor AG"},
        {{"--hinge", "a\nb"}, "The value of --hinge must be one line"},
        {{"--flow", "minimal", "--out", "x", "--mistake", "half-turn"},
         "The flow minimal has no stage for the mistake half-turn"},
        {{"--flow", "foursteps", "--out", "x", "--mistake", "magnet", "--mistake-stage", "5"},
         "The flow foursteps has no stage 5"},
    };
    for (const auto& [arguments, expected] : cases) {
        try {
            parseRecordArguments(arguments);
            ADD_FAILURE() << "accepted instead of: " << expected;
        } catch (const ArgumentError& error) {
            EXPECT_EQ(error.what(), expected);
        }
    }
}

TEST(RecordCommandTest, FilesOfARunAreWritten) {
    const test::TempFolder temporary;
    const std::string folder = temporary.path("run");
    const Words arguments = {"--flow", "minimal", "--hold", "1",     "--sensors",
                             "AM",     "--out",   folder,   "--crlf"};
    runRecordCommand(arguments);
    std::string dump;
    ASSERT_TRUE(platform::readFile(folder + "\\dataDumpMagnetometer.csv", dump));
    EXPECT_EQ(dump.substr(0, 38), "LUID=020f000100000002\r\nFORMFACTOR=2IN1");
    EXPECT_FALSE(platform::fileExists(folder + "\\dataDumpGyroscope.csv"));
    std::string truth;
    ASSERT_TRUE(platform::readFile(folder + "\\truth.txt", truth));
    EXPECT_NE(truth.find("flow=minimal\r\nseed=1\r\n"), std::string::npos);
    EXPECT_NE(truth.find("stage1.end_ms=1000.000000\r\n"), std::string::npos);
}

TEST(RecordCommandTest, FolderThatCannotBeMadeIsReported) {
    EXPECT_NE(record(RecordingOptions()).writeTo(std::string("a\0b", 3)), "");
}

}  // namespace
}  // namespace tavocal::simulator
