#include "app/SensorSelection.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "app/CmdLineFixture.h"
#include "app/RunSettings.h"
#include "sensors/InertialSensor.h"

namespace tavocal::test {

namespace {

const std::string kLetters = "AGML";
constexpr std::array<std::uint16_t, 4> kTypes = {0x0073, 0x0076, 0x020F, 0x0041};

std::shared_ptr<Sensor> makeLettered(const std::string& word) {
    const bool isStatic = std::isupper(word[0]) != 0;
    const auto letter = kLetters.find(static_cast<char>(std::toupper(word[0])));
    const std::uint8_t instance = word.size() > 1 ? 1 : 0;
    return makeSensor({kTypes.at(letter), 0, 0, instance, isStatic ? kStaticFlag : kDynamicFlag});
}

std::string lettersOf(const Sensor& sensor) {
    const LUID luid = sensor.getLuid();
    const auto type = std::find(kTypes.begin(), kTypes.end(), luid.SensorTypeId);
    const auto* inertial = dynamic_cast<const InertialSensor*>(&sensor);
    return kLetters.substr(static_cast<std::size_t>(type - kTypes.begin()), 1) +
           (luid.InstanceId == 0 ? "" : "2") +
           (inertial != nullptr && inertial->noGyroRotation ? "!" : "");
}

}  // namespace

using SensorSelectionTest = CmdLineFixture;

TEST_F(SensorSelectionTest, SensorsOfARun) {
    for (const char* name :
         {"dataDumpAccelerometer", "dataDumpAccelerometer_2", "dataDumpGyroscope", "xGyroscope",
          "dataDumpAmbientLightSensor", "dataDumpAmbientLightSensor_2", "pMagnetometer_2"}) {
        folder.write(std::string(name) + ".csv", "");
    }
    for (const auto& [row, expected] : rowsOf("app/sensor-selection.txt")) {
        EXPECT_EQ(failureOf(row.substr(0, row.find('|'))), kNoFailure) << row;
        const RunSettings settings = runSettings(cmdLine);
        const SensorSelection selection(cmdLine, settings);
        SensorSelection::Sensors sensors;
        std::istringstream words(row.substr(row.find('|') + 1));
        for (std::string word; words >> word;) {
            sensors.push_back(makeLettered(word));
        }
        if (sensors.empty()) {
            sensors = selection.initSensorsFromDumps();
        }
        std::string selected;
        const std::string failure = messageOf<CalibrationException>([&] {
            for (const auto& sensor : selection.initCalibratingSensors(
                     sensors, [] { throw CalibrationException("no second instance"); })) {
                selected += (selected.empty() ? "" : " ") + lettersOf(*sensor);
            }
        });
        EXPECT_EQ(failure == kNoFailure ? selected : failure, expected) << row;
    }
}

}  // namespace tavocal::test
