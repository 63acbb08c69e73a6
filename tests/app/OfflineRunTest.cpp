#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "simulator/Recording.h"
#include "support/TempFolder.h"
#include "support/ToolRun.h"

// Whole runs of the program, without a device, on recordings of the simulated one.
namespace tavocal::test {

namespace {

using simulator::Flow;
using simulator::Mistake;
using simulator::RecordingOptions;

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
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        worst = std::max(worst, std::abs(numbers[k] - matrix.rows[k / 3][k % 3]));
    }
    return worst;
}

class OfflineRunTest : public ::testing::Test {
  protected:
    // Records into the folder "dumps".
    simulator::Recording recorded(Flow flow, const std::string& sensors = "A") {
        options.flow = flow;
        options.sensors = sensors;
        simulator::Recording recording = record(options);
        EXPECT_EQ(recording.writeTo(folder.path("dumps"), crlf), "");
        return recording;
    }

    ToolResult run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"-ExportAllFiles", "out", "-UseRawData", "dumps"});
        return runTavocal(folder.path(), arguments);
    }

    bool left(const std::string& name) const {
        return std::filesystem::exists(folder.path("out/" + name));
    }

    std::string file(const std::string& name) const {
        return fileContent(folder.path("out/" + name));
    }

    TempFolder folder;
    RecordingOptions options;
    bool crlf = false;
};

}  // namespace

TEST_F(OfflineRunTest, AccelerometerComesOutRight) {
    for (const std::uint64_t seed : {1U, 2U, 3U, 4U}) {
        SCOPED_TRACE(seed);
        options.seed = seed;
        options.noiseG = 0.002;
        const auto truth = recorded(Flow::AccelerometerOnly).truth.sensors.at("Accelerometer");
        const ToolResult result = run({"-CalibrateOffline", "A"});
        ASSERT_EQ(result.status, 0) << result.output;
        const auto offset = printed(result.output, "Accelerometer Offset", 3);
        EXPECT_NEAR(offset[0], truth.offset.x, 0.002);
        EXPECT_NEAR(offset[1], truth.offset.y, 0.002);
        EXPECT_NEAR(offset[2], truth.offset.z, 0.002);
        EXPECT_LT(worstDifference(printed(result.output, "Accelerometer Scale", 9), truth.scale),
                  0.003);
        EXPECT_EQ(worstDifference(printed(result.output, "Accelerometer Axis mapping", 9),
                                  truth.axisMapping),
                  0.0);
    }
    EXPECT_TRUE(left("AGMLogFile.xml"));
    EXPECT_TRUE(left("resultCalibration.xml"));
    EXPECT_FALSE(left("logfile.txt"));
    EXPECT_FALSE(left("calibratedDataDumpAccelerometer.csv"));
}

TEST_F(OfflineRunTest, OperatorSeesTheWholeRunInOrder) {
    recorded(Flow::AccelerometerOnly);
    const ToolResult result = run({"-CalibrateOffline", "a", "-ExportResult"});
    const std::vector<std::string> lineStarts = {
        "",
        "Tavo Calibration Tool",
        "Version: 3.1.0.4596",
        "Sensors to calibrate: ",
        "\t0073000000000002, Accelerometer, formfactor: 2IN1, hinge configuration: BOTTOM",
        "Loading data dump, this might take a while...",
        "data collection finished",
        "Saving calibration data to file out\\resultCalibration.xml",
        "Saving out data dump to file out\\calibratedDataDump",
        "Accelerometer Offset:",
        "",
        "Accelerometer Scale:",
        "",
        "",
        "",
        "Accelerometer Axis mapping:",
        "",
        "",
        "",
        "Calibration process completed successfully",
        "Total run time: 0 seconds",
        "Total run time (excluding time waiting for user inputs): 0 seconds"};
    std::istringstream lines(result.output);
    std::string line;
    for (const std::string& start : lineStarts) {
        ASSERT_TRUE(std::getline(lines, line)) << start;
        EXPECT_EQ(line.substr(0, start.size()), start);
    }
    EXPECT_FALSE(std::getline(lines, line)) << line;
    EXPECT_TRUE(left("calibratedDataDumpAccelerometer.csv"));
}

TEST_F(OfflineRunTest, ResultFileIsTheFixedPointOfThePrintedResult) {
    recorded(Flow::FourSteps);
    options.crossAxis = false;
    const ToolResult result = run({"-CalibrateOffline", "A", "-FourSteps"});
    ASSERT_EQ(result.status, 0) << result.output;
    const std::string xml = file("resultCalibration.xml");
    const auto number = [&xml](const std::string& name) {
        return std::stod(from(xml, "<" + name + ">").substr(name.size() + 2));
    };
    const auto offset = printed(result.output, "Accelerometer Offset", 3);
    EXPECT_NEAR(number("OffsetX"), offset[0] * 1e6, 1.5);
    EXPECT_NEAR(number("OffsetZ"), offset[2] * 1e6, 1.5);
    const auto scale = printed(result.output, "Accelerometer Scale", 9);
    EXPECT_NEAR(number("Mat22") / number("ScaleFactor"), scale[4], 4e-5);
    EXPECT_NE(xml.find("\r\n"), std::string::npos);
}

TEST_F(OfflineRunTest, WindowsDumpGivesTheSameFilesToTheByte) {
    const auto files = [this] {
        EXPECT_EQ(run({"-CalibrateOffline", "AGM", "-ExportResult"}).status, 0);
        return file("resultCalibration.xml") + from(file("AGMLogFile.xml"), " Version=") +
               file("calibratedDataDumpGyroscope.csv");
    };
    recorded(Flow::Full, "AGM");
    const std::string first = files();
    EXPECT_EQ(files(), first);
    crlf = true;
    recorded(Flow::Full, "AGM");
    EXPECT_EQ(files(), first);
}

TEST_F(OfflineRunTest, SecondarySensorsAreCalibratedAndSelected) {
    options.secondary = true;
    options.hinge = "LEFT";
    recorded(Flow::Full, "AGM");
    EXPECT_EQ(run({"-CalibrateOffline", "AGM"}).status, 0);
    const ToolResult primary = run({"-CalibrateOffline", "motion", "-PrimaryOnly"});
    EXPECT_EQ(primary.output.find("_2"), std::string::npos);
    const ToolResult secondary = run({"-CalibrateOffline", "A", "-SecondaryOnly"});
    EXPECT_EQ(secondary.status, 0) << secondary.output;
    EXPECT_NE(secondary.output.find("Second Accelerometer Offset"), std::string::npos);
}

TEST_F(OfflineRunTest, FailedCalibrationLeavesReportAndLogButNoResult) {
    options.mistake = Mistake::HalfTurn;
    recorded(Flow::Full, "AGM");
    const ToolResult result = run({"-CalibrateOffline", "AGM"});
    EXPECT_EQ(result.status, 255);
    const std::string end = from(result.output, "data collection finished\n");
    EXPECT_EQ(end.find("data collection finished\nCALIBRATION FAILED\n[ERROR]: LOG FILE IS SAVED "
                       "SINCE ERROR OCCURED.\nError:\nCalibration failed for sensor Gyroscope. "
                       "Reason: "),
              0U)
        << end;
    EXPECT_FALSE(left("resultCalibration.xml"));
    EXPECT_NE(file("AGMLogFile.xml").find("FailureParameter="), std::string::npos);
    EXPECT_NE(file("logfile.txt").find("[CalibrationManager::start]"), std::string::npos);
}

TEST_F(OfflineRunTest, RunThatEndsEarlyHasNotEnoughData) {
    options.mistake = Mistake::CutShort;
    recorded(Flow::AccelerometerOnly);
    const ToolResult result = run({"-CalibrateOffline", "A"});
    EXPECT_EQ(result.status, 255);
    EXPECT_NE(
        result.output.find("Error:\nUnexpected data dump size. Not enough data for completing "
                           "the calibration process\n"),
        std::string::npos);
    EXPECT_FALSE(left("AGMLogFile.xml"));
    EXPECT_TRUE(left("logfile.txt"));
}

// ---- Tests of a stored calibration ----

TEST_F(OfflineRunTest, GoodDevicePassesItsTests) {
    options.perfect = true;
    recorded(Flow::FourSteps, "AG");
    const ToolResult result = run({"-TestCalibration", "AG", "-FourSteps"});
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_NE(result.output.find("----   test pass -----\nCompleted successfully\n"),
              std::string::npos);
    EXPECT_FALSE(left("error.log"));
    EXPECT_NE(file("LogFile.xml").find("Type=\"4StepsTest\""), std::string::npos);
    recorded(Flow::Minimal, "AG");
    EXPECT_EQ(run({"-TestCalibration", "AG", "-Minimal"}).status, 0);
    recorded(Flow::MagAccuracy, "M");
    // Stages are found by gravity, so its dump is needed too.
    recorded(Flow::MagAccuracy, "AM");
    EXPECT_EQ(run({"-TestCalibration", "M", "-MagAccuracyTest"}).status, 0);
}

TEST_F(OfflineRunTest, EachFaultFailsItsTestAndNamesWhatToCheck) {
    struct Case {
        simulator::Fault fault;
        Flow flow;
        std::vector<std::string> arguments;
        std::string summary;
        std::string comment;
    };
    const std::vector<Case> cases = {
        {simulator::Fault::WrongMounting,
         Flow::FourSteps,
         {"A", "-FourSteps"},
         "2\tAccelerometer: Check Axis Mapping\n",
         "Mean value test"},
        {simulator::Fault::GyroScale10,
         Flow::FourSteps,
         {"AG", "-FourSteps"},
         "",
         "Gyroscope step 1 Gravity rotation test"},
        {simulator::Fault::Spiky,
         Flow::Minimal,
         {"A", "-Minimal"},
         "1\tAccelerometer: Check Calibration\n",
         "Spikes number detected"},
        {simulator::Fault::Noisy,
         Flow::Minimal,
         {"A", "-Minimal"},
         "1\tAccelerometer: Check Calibration\n",
         "Noise on Accelerometer sensor exceeded"},
        {simulator::Fault::EllipticMag,
         Flow::MagAccuracy,
         {"M", "-MagAccuracyTest"},
         "1\tMagnetometer: Check Calibration\n",
         "Magnet scale test"},
        {simulator::Fault::Heading30,
         Flow::MagAccuracy,
         {"M", "-MagAccuracyTest"},
         "1\tMagnetometer: Check Calibration\n",
         "Compass direction test"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(faultName(c.fault));
        // Spikes make noise as well; with more of that allowed the test for spikes speaks.
        folder.write("TestingConfig.xml",
                     c.fault == simulator::Fault::Spiky
                         ? "<TestingConfig><acc_MaxNoise_G0>1</acc_MaxNoise_G0>"
                           "<max_spikes_allowed>0</max_spikes_allowed>"
                           "</TestingConfig>"
                         : "<TestingConfig/>");
        options.perfect = true;
        options.fault = c.fault;
        options.faultSensor.reset();
        if (c.arguments[0] == "A") {
            options.faultSensor = simulator::SensorKind::Accelerometer;
        }
        recorded(c.flow, "AGM");
        std::vector<std::string> arguments = {"-TestCalibration"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const ToolResult result = run(arguments);
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(file("error.log"), c.summary) << result.output;
        EXPECT_NE(result.output.find(c.comment), std::string::npos) << result.output;
        EXPECT_NE(result.output.find("TEST FAILED\n"), std::string::npos);
        EXPECT_NE(file("LogFile.xml").find("FAILED"), std::string::npos);
    }
}

TEST_F(OfflineRunTest, ThresholdsComeFromTheWorkingDirectory) {
    options.perfect = true;
    recorded(Flow::Minimal);
    folder.write("TestingConfig.xml",
                 "<TestingConfig><acc_MaxNoise_G0>0.000001</acc_MaxNoise_G0></TestingConfig>");
    EXPECT_EQ(run({"-TestCalibration", "A", "-Minimal"}).status, 255);
    folder.write("TestingConfig.xml", "<Other/>");
    const ToolResult result = run({"-TestCalibration", "A", "-Minimal"});
    EXPECT_EQ(result.status, 255);
    EXPECT_NE(
        result.output.find("Failed to  get root node of TestingConfig\nError:\nFailed to  get "
                           "root node of TestingConfig\n"),
        std::string::npos);
}

// ---- What is wrong from the start ----

TEST_F(OfflineRunTest, CommandLineErrorTouchesNothing) {
    const ToolResult none = runTavocal(folder.path(), {});
    EXPECT_EQ(none.status, 255);
    EXPECT_EQ(none.output.find("\nTavo Calibration Tool\nVersion: 3.1.0.4596\nNo command was "
                               "specified\n\nUsage:\n"),
              0U);
    EXPECT_EQ(runTavocal(folder.path(), {"-Calibrate", "AX", "-ExportAllFiles", "out"}).status,
              255);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(OfflineRunTest, MissingDumpsAreToldApart) {
    const ToolResult noFolder = run({"-CalibrateOffline", "AGM"});
    EXPECT_NE(noFolder.output.find("Error:\nNo sensors to calibrate could be found\n"),
              std::string::npos);
    EXPECT_FALSE(left("logfile.txt"));
    recorded(Flow::AccelerometerOnly);
    EXPECT_NE(run({"-CalibrateOffline", "G"}).output.find("No sensors to calibrate could be found"),
              std::string::npos);
}

TEST_F(OfflineRunTest, UnusableExportFolderIsTold) {
    recorded(Flow::AccelerometerOnly);
    folder.write("out", "a file");
    const ToolResult result = run({"-CalibrateOffline", "A"});
    EXPECT_NE(result.output.find("Failed creating directory\n"), std::string::npos);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(fileContent(folder.path("out")), "a file");
}

}  // namespace tavocal::test
