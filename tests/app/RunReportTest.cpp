#include "app/RunReport.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/RunSettings.h"
#include "base/Failures.h"
#include "support/MessageOf.h"
#include "support/MotionReplay.h"
#include "support/TempFolder.h"
#include "support/XmlOutline.h"

namespace tavocal::test {

TEST(RunReportTest, EachKindOfRunHasItsFileAndType) {
    const struct {
        RunCommand command;
        FlowType flow;
        const char* file;
        const char* type;
    } kRows[] = {
        {RunCommand::Calibrate, FlowType::Full, "AGMLogFile.xml", "NewMotionFull"},
        {RunCommand::Calibrate, FlowType::Minimal, "AGMLogFile.xml", "MotionMin"},
        {RunCommand::Calibrate, FlowType::FourSteps, "AGMLogFile.xml", "Motion4Steps"},
        {RunCommand::TestCalibration, FlowType::Full, "LogFile.xml", "7stepsTest"},
        {RunCommand::TestCalibration, FlowType::Minimal, "LogFile.xml", "FaceUpTest"},
        {RunCommand::TestCalibration, FlowType::FourSteps, "LogFile.xml", "4StepsTest"},
        {RunCommand::TestCalibration, FlowType::MagAccuracyTest, "LogFile.xml", "4StepsMagTest"},
        {RunCommand::CalibrateAls, FlowType::Full, "AlsLogFile.xml", "Als"},
        {RunCommand::MagEnvironmentTest, FlowType::Full, "LogFile.xml", "MagnetometerPreTest"},
    };
    for (const auto& row : kRows) {
        const TempFolder folder;
        const std::vector<std::shared_ptr<Sensor>> sensors = {makeNamedSensor("Magnetometer"),
                                                              makeNamedSensor("Gyroscope"),
                                                              makeNamedSensor("Accelerometer_2")};
        sensors[0]->report.addComment("first");
        sensors[2]->report.addComment("second");
        RunSettings settings;
        settings.runCommand = row.command;
        settings.flowType = row.flow;
        settings.exportFolder = folder.path() + "\\";
        writeRunReport(settings, sensors);
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));  // nobody wants it
        settings.exportFolderSet = true;
        writeRunReport(settings, sensors);
        const std::string text = outlineOf(fileContent(folder.path(row.file)));
        const std::size_t version = text.find(" Version");
        EXPECT_TRUE(text.starts_with("?xml|version=\"1.0\" encoding=\"UTF-8\"? Log[Date=2"))
            << text;
        EXPECT_EQ(
            text.substr(version),
            std::string(" Version=3.1.0.4596 Type=") + row.type +
                "](Sensor[LUID=020f000000000002 Type=Magnetometer SamplingUnit=milliGauss "
                "Success=false IsPrimary=true](!first!) Sensor[LUID=0073000000000102 "
                "Type=Accelerometer SamplingUnit=g0 Success=false IsPrimary=false](!second!))");
        std::filesystem::remove(folder.path(row.file));
        std::filesystem::create_directory(folder.path(row.file));
        EXPECT_EQ(messageOf<CalibrationException>([&] { writeRunReport(settings, {}); }),
                  "Failed to write to file");
    }
}

}  // namespace tavocal::test
