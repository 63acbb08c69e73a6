#include "sampling/IndicatorHandOver.h"

#include "sampling/FakeRunParts.h"

namespace tavocal::test {

TEST(IndicatorHandOver, SensorsAreOfferedUpToTheFirstPrimaryOne) {
    // What the sequence is handed, and whether the last offer was enough.
    const auto offered = [](const std::vector<std::string>& names, const std::string& wanted) {
        FakeProcess process;
        process.types[0] = wanted;
        const bool enough = offerIndicators(process, fakeSensors(names));
        return process.calls + (enough ? "enough" : "lacking");
    };
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"Accelerometer_2", "Accelerometer"}, "Accelerometer_2 Accelerometer enough"},
        {{"Gyroscope", "Magnetometer", "Gyroscope_2", "Magnetometer_2", "Accelerometer"},
         "Gyroscope Magnetometer Accelerometer enough"},
        {{"AmbientLightSensor_2", "Accelerometer", "AmbientLightSensor"},
         "light:AmbientLightSensor_2 Accelerometer light:AmbientLightSensor enough"},
        {{"Accelerometer", "Gyroscope"}, "Accelerometer Gyroscope lacking"}};
    for (const auto& [names, calls] : rows) {
        EXPECT_EQ(offered(names, "Accelerometer"), calls);
    }
    EXPECT_EQ(
        failureOf([&] { offered({"Gyroscope"}, "Magnetometer"); }),
        "Could not locate sensor Magnetometer for sampling. Magnetometer is mandatory for this "
        "calibration process");
}

}  // namespace tavocal::test
