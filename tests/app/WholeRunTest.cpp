#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "base/Text.h"
#include "simulator/recording/Recording.h"
#include "support/TempFolder.h"
#include "support/ToolRun.h"

// The numbers of whole runs of the program, on recordings and live.
namespace tavocal::test {

// The part of `text` behind `begin`, which has to be there.
static std::string behind(const std::string& text, const std::string& begin) {
    return text.substr(text.find(begin) + begin.size());
}

// The numbers of the matrix or vector that the program prints under a title.
static std::vector<double> printed(const std::string& output, const std::string& title,
                                   std::size_t count) {
    std::istringstream text(behind(output, title + ":\n"));
    std::vector<double> numbers(count, NAN);
    for (double& number : numbers) {
        text >> number;
    }
    return numbers;
}

TEST(WholeRunTest, ErrorsOfTheDeviceComeOut) {
    const TempFolder folder;
    simulator::RecordingOptions options;
    options.secondary = true;
    for (const auto& [seed, hinge] : {std::pair(1U, "LEFT"), std::pair(2U, "BOTTOM")}) {
        options.seed = seed;
        options.hinge = hinge;
        const simulator::Recording recording = record(options);
        EXPECT_EQ(recording.writeTo(folder.path("dumps"), false), "");
        const std::string output =
            runProgram(folder.path(), {"tavocal", "-CalibrateOffline", "AGM", "-UseRawData",
                                       "dumps", "-ExportAllFiles", "out"})
                .output;
        for (const auto& [sensor, errors] : recording.truth.sensors) {
            SCOPED_TRACE(sensor + " of seed " + std::to_string(seed));
            const std::size_t suffix = sensor.find("_2");
            const std::string title =
                (suffix == std::string::npos ? "\n" : "\nSecond ") + sensor.substr(0, suffix);
            const bool isMag = contains(sensor, "Magnetometer");
            const auto offset = printed(output, title + " Offset", 3);
            const double far = std::hypot(offset[0] - errors.offset.x, offset[1] - errors.offset.y,
                                          offset[2] - errors.offset.z);
            EXPECT_LT(far, isMag ? 3.0 : contains(sensor, "Gyroscope") ? 0.02 : 0.001);
            const auto scale = printed(output, title + " Scale", 9);
            // No calibration finds the strength of the field.
            const double length = isMag ? errors.scale.rows[2][2] / scale[8] : 1.0;
            for (std::size_t k = 0; k < 9; ++k) {
                EXPECT_NEAR(scale[k] * length, errors.scale.rows[k / 3][k % 3],
                            isMag ? 0.02 : 0.001);
            }
        }
    }
}

// What the firmware does to the readings is undone.
TEST(WholeRunTest, ASecondLiveCalibrationFindsTheSame) {
    const TempFolder folder;
    const auto calibrate = [&] {
        return runProgram(folder.path(),
                          {"tavosim", "run", "--device", "device.txt", "--speed", "50", "--",
                           "tavocal", "-Calibrate", "A", "-UpdateTavo", "-ExportAllFiles", "out"})
            .status;
    };
    const auto number = [&](const char* name, const char* element) {
        return std::stod(behind(fileContent(folder.path("out/") + name), element));
    };
    ASSERT_EQ(calibrate(), 0);
    const double first = number("resultCalibration.xml", "<OffsetX>");
    ASSERT_EQ(calibrate(), 0);
    EXPECT_EQ(number("currentCalibration.xml", "<OffsetX>"), first);
    EXPECT_NEAR(number("resultCalibration.xml", "<OffsetX>"), first, 2000.0);
    // The dynamic sensor beside it held 1234 and gets what noise and hand make, in millionths.
    EXPECT_NEAR(number("resultCalibration.xml", "<WhiteNoise>"), 2000.0, 600.0);
}

// A run whose console is closed, full or endless is one with nobody there.
TEST(WholeRunTest, StandardFilesCannotHarmARun) {
    const TempFolder folder;
    const auto linesOfDump = [&](const std::string& descriptors) {
        runProgram(folder.path(), {"tavosim",
                                   "run",
                                   "--speed",
                                   "500",
                                   "--sensors",
                                   "A",
                                   "--fault",
                                   "lost-connection",
                                   "--fault-after",
                                   "4",
                                   "--",
                                   "/bin/sh",
                                   "-c",
                                   "exec \"$0\" \"$@\" " + descriptors,
                                   "tavocal",
                                   "-Calibrate",
                                   "A",
                                   "-noEnter",
                                   "1",
                                   "-ExportAllFiles",
                                   "out"});
        const std::string dump = fileContent(folder.path("out/dataDumpAccelerometer.csv"));
        return std::count(dump.begin(), dump.end(), '\n');
    };
    // All that the firmware sent before the connection was lost, and nothing printed to it.
    for (const char* descriptors : {"<&- >&- 2>&-", "</dev/null >/dev/full 2>&1"}) {
        EXPECT_GT(linesOfDump(descriptors), 300) << descriptors;
    }
    for (const char* input : {"</dev/zero", "</", "<&-"}) {
        const ToolResult result =
            runProgram(folder.path(), {"/bin/sh", "-c", std::string("exec \"$0\" \"$@\" ") + input,
                                       "tavocal", "-Calibrate", "ALS", "-UpdateTavo"});
        EXPECT_EQ(result.status, 255);
        const bool answers = std::string(input) == "</dev/zero";
        EXPECT_EQ(behind(result.output, "Error:\n"),
                  answers ? "Invalid number was entered\n" : "Invalid number of stages\n");
    }
}

TEST(WholeRunTest, LimitOfFileSizeCostsTheFileAlone) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("out"));
    folder.write("out/dataDumpGyroscope.csv", "of another run");
    folder.write("out/AGMLogFile.xml", "of another run");
    const ToolResult result =
        runProgram(folder.path(), {"tavosim", "run", "--speed", "500", "--", "/bin/sh", "-c",
                                   "ulimit -f 4; exec \"$0\" \"$@\"", "tavocal", "-Calibrate", "G",
                                   "-Minimal", "-noEnter", "1", "-ExportAllFiles", "out"});
    EXPECT_EQ(behind(result.output, "Error:\n"), "Failed to write to file\n");
    EXPECT_EQ(result.status, 255);
    EXPECT_FALSE(std::filesystem::exists(folder.path("out/dataDumpGyroscope.csv")));
    EXPECT_EQ(fileContent(folder.path("out/AGMLogFile.xml")), "of another run");
}

// For its text, or for its samples.
TEST(WholeRunTest, WantOfMemoryNamesTheFile) {
    const TempFolder folder;
    const auto outputOf = [&](const std::vector<std::string>& arguments) {
        std::vector<std::string> words = {"/bin/sh", "-c", "ulimit -v 30000; exec \"$0\" \"$@\"",
                                          "tavocal"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return runProgram(folder.path(), words).output;
    };
    if (!contains(outputOf({}), "Usage:")) {
        GTEST_SKIP() << "a sanitizer takes more memory";
    }
    std::filesystem::create_directory(folder.path("dumps"));
    std::string rows = "time[ms],Accelerometer_X[g0],Accelerometer_Y[g0],Accelerometer_Z[g0]\n";
    for (int i = 0; i < 1200000; ++i) {
        rows += "1\n";
    }
    const std::string path = folder.write("dumps/dataDumpAccelerometer.csv", rows);
    const auto expectFailure = [&] {
        const std::string output =
            outputOf({"-CalibrateOffline", "A", "-UseRawData", "dumps", "-ExportAllFiles", "out"});
        EXPECT_EQ(behind(output, "Error:\n"),
                  "Out of memory while reading dumps\\dataDumpAccelerometer.csv\n");
    };
    expectFailure();
    // Mostly a hole on the disk.
    std::filesystem::resize_file(path, std::uintmax_t{1} << 30);
    expectFailure();
}

}  // namespace tavocal::test
