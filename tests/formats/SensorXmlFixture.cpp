#include "formats/SensorXmlFixture.h"

namespace tavocal::test {

std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

SensorXmlFixture::SensorXmlFixture() {
    for (const LUID& luid : {kStaticAccelerometer, kPlainInertial}) {
        file.firmware.blocks[luidText(luid)] = CalibrationBlock(40, 0);
    }
    file.firmware.blocks[luidText(kDynamicAccelerometer)] = CalibrationBlock(12, 1);
    file.firmware.blocks[luidText(kAmbientLight)] = {1, 0, 1, 0, 1, 3, 0, 0, 0,
                                                     0, 0, 0, 0, 0, 0, 0, 0, 0};
}

void SensorXmlFixture::expectFailures(const LUID& luid, int formatId,
                                      const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(file.sensorFailure(sensorText(luid, formatId, c.content)), c.failure)
            << c.content.substr(0, 200);
    }
}

CalibrationBlock SensorXmlFixture::blockOf(const LUID& luid, int formatId,
                                           const std::string& content) {
    return file.loadSensor(sensorText(luid, formatId, content))->calibrationToWrite;
}

}  // namespace tavocal::test
