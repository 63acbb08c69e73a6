#include "app/RunReport.h"

#include <filesystem>
#include <sstream>

#include "commandline/RunSettings.h"
#include "support/NamedSensor.h"
#include "support/Outcome.h"
#include "support/TempFolder.h"
#include "support/XmlOutline.h"

namespace tavocal::test {

TEST(RunReportTest, EachKindOfRunHasItsFileAndType) {
    std::istringstream rows(
        "1 0 AGM NewMotionFull  1 1 AGM MotionMin  1 2 AGM Motion4Steps  2 0 Als Als  4 0 | "
        "7stepsTest "
        "3 0 | MagnetometerPreTest  4 1 | FaceUpTest  4 2 | 4StepsTest  4 3 | 4StepsMagTest");
    int command = 0, flow = 0;
    for (std::string file, type; rows >> command >> flow >> file >> type;) {
        const TempFolder folder;
        file = (file == "|" ? "" : file) + "LogFile.xml";
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
        EXPECT_EQ(failureOf([&] { writeRunReport(settings, {}); }), "Failed to write to file");
    }
}

}  // namespace tavocal::test
