#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <sstream>

#include "support/TempFolder.h"
#include "support/ToolRun.h"

// Whole live runs of the program against the simulated firmware, with the simulated operator.
namespace tavocal::test {

namespace {

class LiveRunTest : public ::testing::Test {
  protected:
    ToolResult run(const std::vector<std::string>& arguments,
                   std::vector<std::string> device = {}) {
        device.insert(device.end(), {"--device", "device.txt", "--speed", "50"});
        return runLive(folder.path(), device, arguments);
    }

    bool left(const std::string& name) const {
        return std::filesystem::exists(folder.path("out/" + name));
    }

    std::string file(const std::string& name) const {
        return fileContent(folder.path("out/" + name));
    }

    TempFolder folder;
};

}  // namespace

TEST_F(LiveRunTest, DeviceIsWrongThenCalibratedThenRight) {
    EXPECT_EQ(run({"-TestCalibration", "AG", "-FourSteps"}).status, 255);
    const ToolResult result = run({"-Calibrate", "AGM", "-UpdateTavo", "-ExportAllFiles", "out"});
    ASSERT_EQ(result.status, 0) << result.output;
    for (int step = 1; step <= 7; ++step) {
        EXPECT_NE(result.output.find("STEP " + std::to_string(step) + " PASSED\n"),
                  std::string::npos);
    }
    EXPECT_NE(result.output.find("Saving calibration data to FW\n"), std::string::npos);
    EXPECT_TRUE(left("currentCalibration.xml"));
    EXPECT_TRUE(left("dataDumpMagnetometer.csv"));
    EXPECT_EQ(run({"-TestCalibration", "AG", "-FourSteps"}).status, 0);
}

// A calibration of a calibrated device finds the same: what the firmware does to the readings is
// undone.
TEST_F(LiveRunTest, SecondCalibrationAgreesWithTheFirst) {
    const std::vector<std::string> arguments = {"-Calibrate", "A", "-UpdateTavo", "-ExportAllFiles",
                                                "out"};
    ASSERT_EQ(run(arguments).status, 0);
    const auto offset = [this] {
        return std::stod(from(file("resultCalibration.xml"), "<OffsetX>").substr(9));
    };
    const double first = offset();
    ASSERT_EQ(run(arguments).status, 0);
    EXPECT_NEAR(offset(), first, 2000.0);
    EXPECT_NE(
        file("currentCalibration.xml").find("<OffsetX>" + std::to_string(static_cast<int>(first))),
        std::string::npos);
}

}  // namespace tavocal::test
