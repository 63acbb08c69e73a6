#include "app/RunReport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "app/RunSettings.h"
#include "base/Failures.h"
#include "support/MessageOf.h"
#include "support/MotionReplay.h"
#include "support/TempFolder.h"
#include "support/XmlOutline.h"

namespace tavocal::test {

TEST(RunReportTest, EachKindOfRunHasItsFileAndType) {
    std::istringstream rows(
        "1 0 AGMLogFile.xml NewMotionFull  1 1 AGMLogFile.xml MotionMin  1 2 AGMLogFile.xml "
        "Motion4Steps  2 0 AlsLogFile.xml Als  3 0 LogFile.xml MagnetometerPreTest  4 0 "
        "LogFile.xml "
        "7stepsTest  4 1 LogFile.xml FaceUpTest  4 2 LogFile.xml 4StepsTest  4 3 LogFile.xml "
        "4StepsMagTest");
    int command = 0, flow = 0;
    for (std::string file, type; rows >> command >> flow >> file >> type;) {
        const TempFolder folder;
        const auto mag = makeNamedSensor("Magnetometer");
        const auto acc2 = makeNamedSensor("Accelerometer_2");
        mag->report.addComment("first");
        acc2->report.addComment("second");
        RunSettings settings;
        settings.runCommand = static_cast<RunCommand>(command);
        settings.flowType = static_cast<FlowType>(flow);
        settings.exportFolder = folder.path() + "\\";
        writeRunReport(settings, {mag, makeNamedSensor("Gyroscope"), acc2});
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));  // nobody wants it
        settings.exportFolderSet = true;
        writeRunReport(settings, {mag, makeNamedSensor("Gyroscope"), acc2});
        const std::string text = outlineOf(fileContent(folder.path(file)));
        EXPECT_EQ(text.substr(0, 48), "?xml|version=\"1.0\" encoding=\"UTF-8\"? Log[Date=20");
        EXPECT_EQ(
            text.substr(text.find(" Version")),
            " Version=3.1.0.4596 Type=" + type +
                "](Sensor[LUID=020f000000000002 Type=Magnetometer SamplingUnit=milliGauss "
                "Success=false IsPrimary=true](!first!) Sensor[LUID=0073000000000102 "
                "Type=Accelerometer SamplingUnit=g0 Success=false IsPrimary=false](!second!))");
        std::filesystem::remove(folder.path(file));
        std::filesystem::create_directory(folder.path(file));
        EXPECT_EQ(messageOf<CalibrationException>([&] { writeRunReport(settings, {}); }),
                  "Failed to write to file");
    }
}

}  // namespace tavocal::test
