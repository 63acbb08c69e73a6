#include "app/FirmwareSide.h"

#include <optional>
#include <sstream>

#include "app/InterruptGate.h"
#include "base/Text.h"
#include "commandline/RunSettings.h"
#include "firmware/FakeKelu.h"
#include "formats/CalibrationXml.h"
#include "sensors/SensorFactory.h"
#include "sensors/model/Sensor.h"
#include "simulator/hub/CalibrationBlocks.h"
#include "simulator/live/LiveDevice.h"
#include "support/Outcome.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {

class FirmwareSideTest : public ::testing::Test {
  protected:
    // The firmware of a new device. The options are those of a live run.
    void startFirmware(const std::vector<std::string>& options) {
        device.emplace(simulator::parseLiveArguments(options, 1.0));
        kelu = std::make_shared<FakeKelu>();
        // The client introduces itself.
        tell({0x2e, 0x9a, 0x57, 0xbb, 0x54, 0xcc, 0x50, 0x44, 0xb1, 0xd0, 0x5e, 0x75, 0x20, 0xdc,
              0xad, 0x25});
        kelu->onWrite = [this](const Bytes& request) { kelu->say(tell(request)); };
    }
    Bytes tell(const Bytes& message) {
        device->firmware().receive(1, message);
        return device->firmware().takeOutput().at(0).message;
    }

    const WorkingFolder folder;
    std::optional<simulator::LiveDevice> device;
    std::shared_ptr<FakeKelu> kelu;
    RunSettings settings;
    const FirmwareSide side{settings, [this] { return kelu; }};
};

TEST_F(FirmwareSideTest, FormFactorsWithASecondInstance) {
    for (const std::string formFactor : {"2IN1", "MID", "TABLET", "CLAMSHELL"}) {
        startFirmware({"--form-factor", formFactor});
        const std::string failure = failureOf([&] { side.checkSecondInstance(); });
        EXPECT_EQ(failure == kNoFailure, formFactor == "2IN1" || formFactor == "MID") << failure;
    }
}

TEST_F(FirmwareSideTest, ImportedSensorsMustBeListed) {
    const auto sensor = makeSensor({0x73, 1, 0, 1, 2});
    sensor->importCalibration(Bytes{200, 0, 0, 0, 1, 2});  // a vendor's own
    saveCalibrationXml("second.xml", {sensor}, false);
    startFirmware({});
    settings.importsXml = true;
    settings.importFile = "second.xml";
    EXPECT_EQ(failureOf([&] { side.initPhysicalSensors(); }),
              "A matching Accelerometer_2 physical sensor was not found on the platform in "
              "order to write the calibration data of 0073000100000102");
}

TEST_F(FirmwareSideTest, CompanionsOfStaticSensors) {
    const auto count = [this](const LUID& calibrating, const LUID& other) {
        const auto sensor = makeSensor(calibrating);
        const auto companion = makeSensor(other);
        const auto found = side.matchDynamicSensors({sensor}, {companion, sensor});
        EXPECT_TRUE(found.empty() || found.at(sensor) == companion);
        return found.size();
    };
    const LUID acc{0x0073, 0, 0, 0, 2};
    EXPECT_EQ(count(acc, {0x0073, 0, 0, 0, 1}), 0U);
    settings.runCommand = RunCommand::Calibrate;
    EXPECT_EQ(count(acc, {0x0073, 0, 0, 0, 1}), 1U);
    EXPECT_EQ(count(acc, {0x0073, 0, 7, 0, 2}), 1U);
    for (const LUID& other : {LUID{0x0073}, LUID{0x0073, 1, 0, 0, 1}, LUID{0x0073, 0, 0, 1, 1},
                              LUID{0x0076, 0, 0, 0, 1}}) {
        EXPECT_EQ(count(acc, other), 0U) << luidText(other);
    }
    EXPECT_EQ(count({0x0073, 0, 0, 1, 2}, {0x0073, 0, 0, 0, 1}), 0U);
    settings.flowType = FlowType::Minimal;
    EXPECT_EQ(count(acc, {0x0073, 0, 0, 0, 1}), 0U);
}

// Command, flow and fault, and what is read. The run works on the static accelerometer; it, its
// companion and the gyroscopes are listed.
TEST_F(FirmwareSideTest, BlocksThatARunReads) {
    std::istringstream rows(
        "1 0 none yes,yes,no,no, 1 1 none yes,no,no,no, 2 0 none yes,no,no,no, "
        "0 0 none yes,yes,yes,yes, 1 0 refused-get-calibration no,no,no,no,");
    int command = 0, flow = 0;
    for (std::string fault, expected; rows >> command >> flow >> fault >> expected;) {
        startFirmware({"--fault", fault});
        settings.runCommand = static_cast<RunCommand>(command);
        settings.flowType = static_cast<FlowType>(flow);
        settings.exportsXml = command == 0;
        const FirmwareSide::Sensors sensors = side.initPhysicalSensors();
        side.loadSensorsData(sensors, {sensors[0]}, {{sensors[0], sensors[1]}});
        std::string loaded;
        for (std::size_t i = 0; i < 4; ++i) {
            loaded += sensors.at(i)->getOriginalCalibration().empty() ? "no," : "yes,";
        }
        EXPECT_EQ(loaded, expected);
    }
}

TEST_F(FirmwareSideTest, BlocksAreWrittenBeforeTheReset) {
    const std::pair<const char*, std::string> kRows[] = {
        {"none", kNoFailure},
        {"refused-reset", "SMHI Error: Reset Tavo command failed"},
        {"refused-set-calibration", "SMHI Error: Set calibration data command failed"}};
    for (const auto& [fault, failure] : kRows) {
        startFirmware({"--fault", fault});
        const FirmwareSide::Sensors sensors = side.initPhysicalSensors();
        Sensor& light = *sensors.back();
        light.calibrationToWrite = simulator::lightBlock(3.0);
        const auto answer = kelu->onWrite;
        kelu->onWrite = [&](const Bytes& request) {
            EXPECT_FALSE(InterruptGate::instance().close({})) << "an interrupt has to wait";
            answer(request);
        };
        EXPECT_EQ(messageOf<SmhiException>([&] { side.flushCalibrationData(sensors); }), failure);
        EXPECT_EQ(device->firmware().flash().block(light.getLuid()) == light.calibrationToWrite,
                  !contains(failure, "Set"));
        EXPECT_TRUE(InterruptGate::instance().close({}));
    }
}

}  // namespace tavocal::test
