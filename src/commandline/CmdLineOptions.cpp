#include "commandline/CmdLineOptions.h"

namespace tavocal {

namespace {

// Values of takesValue, mandatory and isCommand that tell more in a table than true and false.
constexpr bool kValue = true;
constexpr bool kNoValue = false;
constexpr bool kOptional = false;
constexpr bool kCommand = true;
constexpr bool kModifier = false;

}  // namespace

// ExportResult counts as a command although it only shapes a run: it is the reason why it can't
// stand beside an XML command, and its own rules ask for a calibration.
std::vector<CmdLineOption> makeCmdLineOptions() {
    using mode::kAllButXml;
    using mode::kCalibrate;
    using mode::kMagneticTest;
    using mode::kOffline;
    using mode::kTest;
    using mode::kXml;
    return {
        {"ImportXml", kValue, "<xml-file-path>", kOptional, kCommand,
         "Import calibration data from XML file", kXml},
        {"ExportXml", kValue, "<xml-file-path>", kOptional, kCommand,
         "Save FW current calibration data to XML file", kXml},
        {"CalibrateOffline", kValue, "", kOptional, kCommand,
         "Run the calibration offline, with no machine dependency", kOffline},
        {"Calibrate", kValue, "<sensors>", kOptional, kCommand,
         "Activate calibration flow on selected sensors", kCalibrate},
        {"TestCalibration", kValue, "", kOptional, kCommand, "Test the calibration of all sensors",
         kTest},
        {"MagTest", kNoValue, "", kOptional, kCommand, "Test the environment magnetic noise level",
         kMagneticTest},
        {"ExportAllFiles", kValue, "<folder-path>", kOptional, kModifier,
         "Export output file to selected folder", kAllButXml},
        {"ExportResult", kNoValue, "", kOptional, kCommand,
         "Export calibration result to output folder", kAllButXml},
        {"UseRawData", kValue, "<dump-folder-path>", kOptional, kModifier,
         "Read the sensors data from dump files instead of sampling sensors",
         kOffline | kCalibrate | kTest},
        {"DumpPrefix", kValue, "<dump-file-prefix>", kOptional, kModifier,
         "Dump-files prefix (default is dataDump)", kOffline | kCalibrate | kTest},
        {"UpdateTavo", kNoValue, "", kOptional, kModifier,
         "Flush the calculated calibration data to the Tavo", kCalibrate},
        {"Auto", kValue, "<config-file-path>", kOptional, kModifier,
         "Automatic ALS calibration process, based on configuration file", kOffline | kCalibrate},
        {"Minimal", kNoValue, "", kOptional, kModifier,
         "Performs the fastest and minimal calibration on the selected sensors. For motion sensors "
         "this will trigger a 1 position face up calibration",
         kCalibrate | kTest},
        {"FourSteps", kNoValue, "", kOptional, kModifier,
         "Performs the shortened 4 steps calibration on the selected sensors",
         kOffline | kCalibrate | kTest},
        {"MagAccuracyTest", kNoValue, "", kOptional, kModifier,
         "Performs 4 steps test on Magnetometer accuracy", kTest},
        {"CheckVsOriginalAxis", kNoValue, "", kOptional, kModifier,
         "Fail 4 steps Calibration if Axis Mapping of Accelerometer differs from original one",
         kCalibrate},
        {"PrimaryOnly", kNoValue, "", kOptional, kModifier, "Calibrate primary sensors only",
         kOffline | kCalibrate | kTest},
        {"SecondaryOnly", kNoValue, "", kOptional, kModifier, "Calibrate secondary sensors only",
         kOffline | kCalibrate | kTest},
        {"NoEnter", kValue, "", kOptional, kModifier,
         "Wait x milliseconds instead of user pressing Enter", kCalibrate | kTest},
        {"NoGyroRotation", kNoValue, "", kOptional, kModifier,
         "Does not calculate the exact Gyroscope rotation, use this option if you don't have "
         "fixture",
         kCalibrate},
        {"SamplingInterval", kValue, "<sampling_interval_ms>", kOptional, kModifier,
         "Assign specific sampling interval of sensors, unit is ms", kCalibrate | kTest},
    };
}

}  // namespace tavocal
