#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "base/Text.h"
#include "simulator/Recording.h"
#include "support/TempFolder.h"
#include "support/ToolRun.h"

// The numbers of whole runs of the program, on recordings and live.
namespace tavocal::test {

namespace {

using simulator::RecordingOptions;
using simulator::SensorTruth;

class WholeRunTest : public ::testing::Test {
  protected:
    simulator::RecordingTruth recorded(bool crlf = false) {
        const simulator::Recording recording = record(options);
        EXPECT_EQ(recording.writeTo(folder.path("dumps"), crlf), "");
        return recording.truth;
    }

    ToolResult replay(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"-UseRawData", "dumps", "-ExportAllFiles", "out"});
        ToolResult result = runTavocal(folder.path(), arguments);
        EXPECT_EQ(result.status, 0) << result.output;
        return result;
    }

    int live(const std::vector<std::string>& arguments) {
        return runLive(folder.path(), {"--device", "device.txt", "--speed", "50"}, arguments)
            .status;
    }

    std::string file(const std::string& name) const {
        return fileContent(folder.path("out/" + name));
    }

    TempFolder folder;
    RecordingOptions options;
};

// The numbers of the matrix or vector that the program prints under a title.
std::vector<double> printed(const std::string& output, const std::string& title,
                            std::size_t count) {
    std::istringstream text(from(output, title + ":\n").substr(title.size() + 2));
    std::vector<double> numbers(count, NAN);
    for (double& number : numbers) {
        text >> number;
    }
    return numbers;
}

double worstDifference(const std::vector<double>& numbers, const simulator::Mat3& matrix) {
    double worst = 0.0;
    for (std::size_t k = 0; k < 9; ++k) {
        worst = std::fmax(worst, std::abs(numbers[k] - matrix.rows[k / 3][k % 3]));
    }
    return worst;
}

TEST_F(WholeRunTest, ErrorsOfTheDeviceComeOut) {
    options.secondary = true;
    for (const auto& [seed, hinge] : {std::pair(1U, "LEFT"), std::pair(2U, "BOTTOM")}) {
        options.seed = seed;
        options.hinge = hinge;
        const simulator::RecordingTruth truth = recorded();
        const std::string output = replay({"-CalibrateOffline", "AGM"}).output;
        for (const auto& [sensor, errors] : truth.sensors) {
            SCOPED_TRACE(sensor + " of seed " + std::to_string(seed));
            const std::size_t suffix = sensor.find("_2");
            const std::string title =
                (suffix == std::string::npos ? "\n" : "\nSecond ") + sensor.substr(0, suffix);
            const bool isMag = contains(sensor, "Magnetometer");
            const auto offset = printed(output, title + " Offset", 3);
            const double far = std::hypot(offset[0] - errors.offset.x, offset[1] - errors.offset.y,
                                          offset[2] - errors.offset.z);
            EXPECT_LT(far, isMag ? 3.0 : contains(sensor, "Gyroscope") ? 0.02 : 0.001);
            auto scale = printed(output, title + " Scale", 9);
            // No calibration finds the strength of the field.
            const double length = isMag ? errors.scale.rows[2][2] / scale[8] : 1.0;
            std::for_each(scale.begin(), scale.end(), [&](double& x) { x *= length; });
            EXPECT_LT(worstDifference(scale, errors.scale), isMag ? 0.02 : 0.001);
            const auto mapping = printed(output, title + " Axis mapping", 9);
            EXPECT_EQ(worstDifference(mapping, errors.axisMapping), 0.0);
        }
    }
}

TEST_F(WholeRunTest, RunsOfTheSameDumpsGiveTheSameFilesWhateverTheirLineEnds) {
    const auto files = [this](bool crlf) {
        recorded(crlf);
        replay({"-CalibrateOffline", "AGM", "-ExportResult"});
        return file("resultCalibration.xml") + from(file("AGMLogFile.xml"), " Version=") +
               file("calibratedDataDumpGyroscope.csv");
    };
    const std::string first = files(false);
    EXPECT_EQ(files(false), first);
    EXPECT_EQ(files(true), first);
}

// What the firmware does to the readings is undone.
TEST_F(WholeRunTest, ASecondLiveCalibrationFindsTheSame) {
    const std::vector<std::string> calibrate = {"-Calibrate", "A", "-UpdateTavo", "-ExportAllFiles",
                                                "out"};
    const std::vector<std::string> test = {"-TestCalibration", "A", "-FourSteps"};
    const auto offset = [this](const std::string& name) {
        return std::stod(from(file(name), "<OffsetX>").substr(9));
    };
    EXPECT_EQ(live(test), 255);
    ASSERT_EQ(live(calibrate), 0);
    const double first = offset("resultCalibration.xml");
    ASSERT_EQ(live(calibrate), 0);
    EXPECT_EQ(offset("currentCalibration.xml"), first);
    EXPECT_NEAR(offset("resultCalibration.xml"), first, 2000.0);
    EXPECT_EQ(live(test), 0);
}

}  // namespace

}  // namespace tavocal::test
