#include "sensors/inertial/InertialBlockSensor.h"

#include "support/CalibrationFile.h"

namespace tavocal::test {

using InertialBlockSensorTest = CalibrationFile;

TEST_F(InertialBlockSensorTest, StaticData) {
    expectTableOfTest();
    const auto sensor = load(lastLoaded()).at(0);
    EXPECT_EQ(sensor->formFactor, firmware.formFactor);
    EXPECT_EQ(sensor->hinge, firmware.hinge);
    EXPECT_EQ(sensor->getOriginalCalibration(), CalibrationBlock(40, 0));
    firmware.blocks.clear();
    EXPECT_THROW(load(lastLoaded()), SmhiException);
}

TEST_F(InertialBlockSensorTest, WhiteNoiseGoesIntoThePresentBlock) {
    expectTableOfTest();
    const auto loadOverUnusable = [this] {
        for (const CalibrationBlock& unusable : {CalibrationBlock{}, CalibrationBlock(12, 9)}) {
            firmware.blocks["0073000100020001"] = unusable;
            EXPECT_EQ(outcomeOf(lastLoaded()),
                      "Error. No original scaling for dynamic sensor Accelerometer");
        }
    };
    EXPECT_EQ(printedBy(loadOverUnusable),
              "Warning: Dynamic sensor calibration data is outdated. Ignoring the dynamic "
              "Accelerometer\n");
}

}  // namespace tavocal::test
