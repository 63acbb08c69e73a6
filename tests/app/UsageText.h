#pragma once

namespace tavocal::test {

// The whole usage text of a program called tavocal.exe.
inline constexpr const char* kUsageText = R"(
Usage:

tavocal.exe [-ImportXml <filename>] [-ExportXml <filename>]
tavocal.exe -Calibrate <sensors> [-ExportAllFiles <folder>] [-UpdateTavo] [-UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-Minimal | -FourSteps] [-CheckVsOriginalAxis] [-noGyroRotation] [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]
tavocal.exe -Calibrate <sensors> [-ExportAllFiles <folder> [-ExportResult]] [-UpdateTavo] [-UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-Minimal | -FourSteps] [-CheckVsOriginalAxis] [-noGyroRotation] [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]
tavocal.exe -CalibrateOffline <sensors> -ExportAllFiles <folder> -UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>] [-FourSteps]  [-PrimaryOnly | -SecondaryOnly]
tavocal.exe -CalibrateOffline <sensors> -ExportAllFiles <folder> [-ExportResult] -UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>] [-FourSteps]  [-PrimaryOnly | -SecondaryOnly]
tavocal.exe -TestCalibration <sensors> [-ExportAllFiles <folder>]  [-Minimal | -FourSteps]  [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]
tavocal.exe -Calibrate ALS [-ExportAllFiles <folder>] [-Auto <config-file-path>] [-UpdateTavo] [-UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]
tavocal.exe -Calibrate ALS [-ExportAllFiles <folder> [-ExportResult]] [-Auto <config-file-path>] [-UpdateTavo] [-UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>]] [-PrimaryOnly | -SecondaryOnly] [-SamplingInterval <sampling_interval_ms>]
tavocal.exe -CalibrateOffline ALS -Auto <config-file-path> -UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>] -ExportAllFiles <folder> [-PrimaryOnly | -SecondaryOnly]
tavocal.exe -CalibrateOffline ALS -Auto <config-file-path> -UseRawData <dump-folder-path> [-DumpPrefix <dump-file-prefix>] -ExportAllFiles <folder> [-ExportResult] [-PrimaryOnly | -SecondaryOnly]
tavocal.exe -MagTest [-ExportAllFiles <folder>]

Description:

 -ImportXml <xml-file-path>               :  Import calibration data from XML file
 -ExportXml <xml-file-path>               :  Save FW current calibration data to XML file
 -CalibrateOffline                        :  Run the calibration offline, with no machine dependency
 -Calibrate <sensors>                     :  Activate calibration flow on selected sensors
 -TestCalibration                         :  Test the calibration of all sensors
 -MagTest                                 :  Test the environment magnetic noise level
 -ExportAllFiles <folder-path>            :  Export output file to selected folder
 -ExportResult                            :  Export calibration result to output folder
 -UseRawData <dump-folder-path>           :  Read the sensors data from dump files instead of sampling sensors
 -DumpPrefix <dump-file-prefix>           :  Dump-files prefix (default is dataDump)
 -UpdateTavo                              :  Flush the calculated calibration data to the Tavo
 -Auto <config-file-path>                 :  Automatic ALS calibration process, based on configuration file
 -Minimal                                 :  Performs the fastest and minimal calibration on the selected sensors. For motion sensors this will trigger a 1 position face up calibration
 -FourSteps                               :  Performs the shortened 4 steps calibration on the selected sensors
 -MagAccuracyTest                         :  Performs 4 steps test on Magnetometer accuracy
 -CheckVsOriginalAxis                     :  Fail 4 steps Calibration if Axis Mapping of Accelerometer differs from original one
 -PrimaryOnly                             :  Calibrate primary sensors only
 -SecondaryOnly                           :  Calibrate secondary sensors only
 -NoEnter                                 :  Wait x milliseconds instead of user pressing Enter
 -NoGyroRotation                          :  Does not calculate the exact Gyroscope rotation, use this option if you don't have fixture
 -SamplingInterval <sampling_interval_ms> :  Assign specific sampling interval of sensors, unit is ms

Examples:

	tavocal.exe -Calibrate AGM -UpdateTavo -ExportAllFiles results
	tavocal.exe -Calibrate AGM -UpdateTavo -ExportAllFiles results -ExportResult
	tavocal.exe -Calibrate AGM -UpdateTavo -ExportAllFiles results -UseRawData resultsFolder -DumpPrefix dataDump
	tavocal.exe -Calibrate AGM -UpdateTavo -ExportAllFiles results -ExportResult -UseRawData resultsFolder -DumpPrefix dataDump
	tavocal.exe -TestCalibration AG -ExportAllFiles results -Minimal -noEnter 2000
	tavocal.exe -TestCalibration AG -ExportAllFiles results -FourSteps
	tavocal.exe -TestCalibration M -ExportAllFiles results -MagAccuracyTest
	tavocal.exe -ExportXml filename.xml
	tavocal.exe -ImportXml filename.xml
)";

}  // namespace tavocal::test
