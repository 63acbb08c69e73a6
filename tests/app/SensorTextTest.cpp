#include "app/SensorText.h"

#include "app/CmdLineFixture.h"

namespace tavocal::test {

using SensorTextTest = CmdLineFixture;

constexpr const char* kCalibrateValues =
    "Invalid value for calibrate command. Valid values are AGM(can be partial) and ALS";
constexpr const char* kTestValues =
    "Invalid value for test command. Valid values are AGM(can be partial)";

TEST_F(SensorTextTest, ValuesOfCommands) {
    const struct {
        const char* text;
        const char* calibrating;
        const char* testing;
    } kRows[] = {
        {"A", "", ""},
        {"g", "", ""},
        {"Ga", "", ""},
        {"AAG", kCalibrateValues, kCalibrateValues},
        {"AX", kCalibrateValues, kCalibrateValues},
        {"Als", kCalibrateValues, kCalibrateValues},
        {"alss", kCalibrateValues, kCalibrateValues},
        {"motions", kCalibrateValues, kCalibrateValues},
        {"XYZ", kCalibrateValues, kTestValues},
        {"''", kCalibrateValues, kTestValues},
        {"ALS", "", kTestValues},
        {"als", "", kTestValues},
    };
    for (const auto& row : kRows) {
        const std::string text = row.text;
        EXPECT_EQ(failureOf("-UpdateTavo -Calibrate " + text), row.calibrating) << text;
        EXPECT_EQ(failureOf("-Minimal -TestCalibration " + text), row.testing) << text;
    }
    for (const char* text : {"mga", "M", "motion", "MOTION", "MoTiOn"}) {
        EXPECT_EQ(failureOf("-UpdateTavo -Calibrate " + std::string(text)), "") << text;
    }
}

TEST_F(SensorTextTest, SensorsThatAnOptionDoesNotSuit) {
    constexpr const char* kOnlyGyroscope =
        "Only if you perform full calibration of gyroscope, you can use the NoGyroRotation command";
    constexpr const char* kOnlyMotion =
        "These options are only for motion sensors: Minimal, Foursteps";
    const struct {
        const char* line;
        const char* message;
    } kRows[] = {
        {"-Calibrate AGM -UpdateTavo -FourSteps", "Only A, G can be calibrated with this flow"},
        {"-Calibrate motion -UpdateTavo -FourSteps", "Only A, G can be calibrated with this flow"},
        {"-Calibrate m -UpdateTavo -Minimal", "Magnetometer is not applied to 1 step calibration"},
        {"-CalibrateOffline AGM -UseRawData d -ExportAllFiles o -FourSteps", ""},
        {"-TestCalibration AM -Minimal", "Only A, G can be tested with this flow"},
        {"-TestCalibration M -FourSteps", "Only A, G can be tested with this flow"},
        {"-TestCalibration GM -MagAccuracyTest", "Only M can be tested with this flow"},
        {"-TestCalibration A -MagAccuracyTest", "Only M can be tested with this flow"},
        {"-TestCalibration motion -MagAccuracyTest", ""},
        {"-Calibrate AM -UpdateTavo -NoGyroRotation", kOnlyGyroscope},
        {"-Calibrate ALS -UpdateTavo -NoGyroRotation", kOnlyGyroscope},
        {"-Calibrate G -UpdateTavo -NoGyroRotation -Minimal", kOnlyGyroscope},
        {"-Calibrate G -UpdateTavo -NoGyroRotation -FourSteps", kOnlyGyroscope},
        {"-Calibrate als -UpdateTavo -Minimal", kOnlyMotion},
        {"-CalibrateOffline ALS -UseRawData d -ExportAllFiles o -FourSteps", kOnlyMotion},
        {"-CalibrateOffline ALS -UseRawData d -ExportAllFiles o",
         "If ALS runs offline light levels file must be supplied"},
        {"-Calibrate AG -Auto $/light.txt -UpdateTavo",
         "Invalid automatic calibration argument, automatic calibration parameter is applicable "
         "only for Ambient Light sensor calibration"},
        {"-Calibrate ALS -UpdateTavo -UseRawData d",
         "Invalid calibration argument, automatic calibration parameter is required when loading a "
         "data dump"},
        {"-Calibrate ALS -UpdateTavo -UseRawData d -Auto $/light.txt", ""},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(failureOf(row.line), row.message) << row.line;
    }
}

}  // namespace tavocal::test
