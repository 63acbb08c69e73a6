#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <map>
#include <thread>

#include "base/Failures.h"
#include "base/LittleEndian.h"
#include "firmware/SmhiLayout.h"
#include "platform/Console.h"
#include "sampling/FakeRunParts.h"
#include "sampling/SensorManager.h"
#include "simulator/FirmwareAnswer.h"
#include "support/MessageOf.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {
namespace {

// A firmware that records no session. It has a minimal interval, in milliseconds, for the lengths of
// the sensors' names, and refuses to tell any other.
class TinyFirmware {
  public:
    explicit TinyFirmware(std::map<std::uint8_t, std::uint32_t> minima)
        : minimalIntervals(std::move(minima)) {
        const sockaddr_un address{AF_UNIX, "tavo.sock"};
        const void* const any = &address;
        bind(listener, static_cast<const sockaddr*>(any), sizeof(address));
        listen(listener, 8);
        worker = std::thread([this] {
            for (int client = 0; (client = accept(listener, nullptr, nullptr)) >= 0; close(client)) {
                serve(client);
            }
        });
    }
    ~TinyFirmware() {
        shutdown(listener, SHUT_RDWR);
        worker.join();
        close(listener);
        unlink("tavo.sock");
    }

    std::string asked;  // "minimum " for each question, and the microseconds that were set

  private:
    void serve(int client) {
        Bytes request(5000);
        for (bool greeted = false; recv(client, request.data(), request.size(), 0) > 0;
             greeted = true) {
            const Bytes reply = greeted ? answer(request) : simulator::greeting();
            send(client, reply.data(), reply.size(), MSG_NOSIGNAL);
        }
    }
    Bytes answer(const Bytes& request) {
        const auto minimum = minimalIntervals.find(request[smhi::kRequestLuidAt]);
        if (request[0] == smhi::kGetProperty) {
            asked += "minimum ";
            if (minimum != minimalIntervals.end()) {
                return simulator::propertyAnswer(smhi::kMinReportInterval, minimum->second * 1000);
            }
        }
        if (request[0] == smhi::kSetProperty &&
            readU16(request, smhi::kPropertyAt) == smhi::kReportInterval) {
            asked += std::to_string(readU32(request, smhi::kPropertyDataAt)) + " ";
        }
        return simulator::headerAnswer(request[0], request[0] == smhi::kSetProperty
                                                       ? simulator::FirmwareStatus::Success
                                                       : simulator::FirmwareStatus::WrongState);
    }

    std::map<std::uint8_t, std::uint32_t> minimalIntervals;
    int listener = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    std::thread worker;
};

TEST(SensorManagerLive, AsksTheFirmwareForTheIntervalOfTheRun) {
    const WorkingFolder folder;
    const std::string kTold =
        "failed to get minimal reporting interval from sensor, will use default sampling interval: "
        "20ms\n";
    const struct {
        RunCommand command;
        int option;
        std::map<std::uint8_t, std::uint32_t> minima;
        std::string asked, printed;
    } rows[] = {
        {RunCommand::Calibrate, 0, {}, "10000 10000 ", ""},
        {RunCommand::TestCalibration, 0, {}, "10000 10000 ", ""},
        {RunCommand::Calibrate, 50, {}, "50000 50000 ", ""},
        {RunCommand::CalibrateAls, 5, {{18, 99}, {20, 99}}, "5000 5000 ", ""},
        {RunCommand::CalibrateAls, 0, {{18, 5}, {20, 19}}, "minimum minimum 20000 20000 ", ""},
        {RunCommand::CalibrateAls, 0, {{18, 99}, {20, 30}}, "minimum minimum 99000 99000 ", ""},
        {RunCommand::CalibrateAls, 0, {{20, 99}}, "minimum minimum 20000 20000 ", kTold},
        {RunCommand::CalibrateAls, 0, {{18, 0}, {20, 0}}, "minimum minimum 20000 20000 ", kTold}};
    for (const auto& row : rows) {
        TinyFirmware firmware(row.minima);
        SensorManager manager;
        const auto process = std::make_shared<FakeProcess>();
        process->types = {"AmbientLightSensor"};
        process->runType = row.command;
        manager.setSensors(fakeSensors("AmbientLightSensor_2 AmbientLightSensor"));
        manager.setProcess(process);
        if (row.option > 0) {
            manager.setSamplingInterval(row.option);
        }
        testing::internal::CaptureStdout();
        manager.prepareSensors();
        platform::Console::instance().flush();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), row.printed);
        testing::internal::CaptureStdout();
        EXPECT_EQ(messageOf<CalibrationException>([&] { manager.startSampling(); }),
                  "Failed to start PNRRecord");
        EXPECT_EQ(messageOf<CalibrationException>([&] { manager.stopSampling(); }), kNoFailure);
        platform::Console::instance().flush();
        testing::internal::GetCapturedStdout();
        EXPECT_EQ(firmware.asked, row.asked);
    }
}

TEST(SensorManagerLive, FailsWithoutFirmwareOrSensors) {
    const WorkingFolder folder;
    SensorManager manager;
    const auto startOrStop = [&](auto action) {
        return messageOf<CalibrationException>([&] { (manager.*action)(); });
    };
    EXPECT_EQ(startOrStop(&SensorManager::stopSampling), "No sensors were set for sampling");
    manager.setSensors(fakeSensors("Accelerometer"));
    EXPECT_EQ(startOrStop(&SensorManager::startSampling), "Failed to start sampling");
    EXPECT_EQ(startOrStop(&SensorManager::stopSampling), "Failed to stop sampling");
}

}  // namespace
}  // namespace tavocal::test
