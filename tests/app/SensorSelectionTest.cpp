#include "app/SensorSelection.h"

#include "commandline/CmdLineFixture.h"
#include "commandline/RunSettings.h"
#include "sensors/SensorFactory.h"
#include "sensors/inertial/InertialSensor.h"

namespace tavocal::test {

using SensorSelectionTest = CmdLineFixture;

TEST_F(SensorSelectionTest, SensorsOfARun) {
    for (const char* name :
         {"dataDumpAccelerometer", "dataDumpAccelerometer_2", "dataDumpGyroscope", "xGyroscope",
          "dataDumpAmbientLightSensor", "dataDumpAmbientLightSensor_2", "pMagnetometer_2"}) {
        std::ofstream{std::string(name) + ".csv"};
    }
    for (const auto& [row, expected] : rowsOf("app/sensor-selection.txt")) {
        EXPECT_EQ(failureOf(row.substr(0, row.find('|'))), kNoFailure) << row;
        const RunSettings settings = runSettings(cmdLine);
        const SensorSelection selection(settings);
        SensorSelection::Sensors sensors;
        std::istringstream words(row.substr(row.find('|') + 1));
        for (std::string word; words >> word;) {
            LUID luid;
            ASSERT_TRUE(parseLuidText(word, luid));
            sensors.push_back(makeSensor(luid));
        }
        if (sensors.empty()) {
            sensors = selection.initSensorsFromDumps();
        }
        std::string selected;
        const std::string failure = messageOf<CalibrationException>([&] {
            for (const auto& sensor : selection.initCalibratingSensors(
                     sensors, [] { throw CalibrationException("no second instance"); })) {
                selected += (selected.empty() ? "" : " ") + sensor->getDisplayName();
                const auto* inertial = dynamic_cast<const InertialSensor*>(sensor.get());
                selected += inertial != nullptr && inertial->noGyroRotation ? " unrotated" : "";
            }
        });
        EXPECT_EQ(failure == kNoFailure ? selected : failure, expected) << row;
    }
}

}  // namespace tavocal::test
