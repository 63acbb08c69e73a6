#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <thread>

#include "firmware/SmhiLayout.h"
#include "log/Logger.h"
#include "sampling/FakeRunParts.h"
#include "sampling/SensorManager.h"
#include "simulator/messages/FirmwareAnswer.h"
#include "support/WorkingFolder.h"

namespace tavocal::test {
using Minima = std::array<int, 2>;

// Tells the minimal intervals in milliseconds of a primary and a secondary sensor, of
// which it doesn't tell a negative one. There is no session.
static void serve(int listener, const Minima& minima) {
    Bytes request(5000);
    for (int client = 0; (client = accept(listener, nullptr, nullptr)) >= 0; close(client)) {
        while (recv(client, request.data(), request.size(), 0) > 0) {
            // Only a property's request names its sensor there.
            const bool asks = request[0] == smhi::kGetProperty;
            const int minimum = asks ? minima.at(request[smhi::kRequestLuidAt + 6]) : -1;
            const bool set = request[0] == smhi::kSetProperty;
            const Bytes reply =
                request[0] == 0x2E ? simulator::greeting()  // a client's GUID
                : minimum >= 0
                    ? simulator::propertyAnswer(smhi::kMinReportInterval,
                                                static_cast<std::uint32_t>(minimum) * 1000)
                    : simulator::headerAnswer(request[0],
                                              set ? simulator::FirmwareStatus::Success
                                                  : simulator::FirmwareStatus::WrongState);
            send(client, reply.data(), reply.size(), MSG_NOSIGNAL);
        }
    }
}

TEST(SensorManagerLive, AsksTheFirmwareForTheIntervalOfTheRun) {
    using enum RunCommand;
    // What was asked for, what the sensors tell, what comes of it, and whether the operator is
    // warned.
    const std::tuple<RunCommand, int, Minima, int, bool> rows[] = {
        {Calibrate, 0, {-1, -1}, 10, false},   {TestCalibration, 0, {99, 99}, 10, false},
        {Calibrate, 50, {-1, -1}, 50, false},  {CalibrateAls, 5, {-1, -1}, 5, false},
        {CalibrateAls, 0, {5, 19}, 20, false}, {CalibrateAls, 0, {99, 30}, 99, false},
        {CalibrateAls, 0, {-1, 99}, 20, true}, {CalibrateAls, 0, {0, 0}, 20, true}};
    for (const auto& [command, option, minima, interval, warns] : rows) {
        const WorkingFolder folder;
        const int listener = socket(AF_UNIX, SOCK_SEQPACKET, 0);
        const sockaddr_un address{AF_UNIX, "tavo.sock"};
        const void* const any = &address;
        bind(listener, static_cast<const sockaddr*>(any), sizeof(address));
        listen(listener, 8);
        std::thread firmware(serve, listener, minima);
        SensorManager manager;
        const auto process = std::make_shared<FakeProcess>();
        process->types = {"AmbientLightSensor"};
        process->runType = command;
        manager.setSensors(fakeSensors({"AmbientLightSensor_2", "AmbientLightSensor"}));
        manager.setProcess(process);
        option > 0 ? manager.setSamplingInterval(option) : void();
        EXPECT_NE(printedBy([&] { manager.prepareSensors(); }).empty(), warns);
        EXPECT_EQ(failureOf([&] { manager.startSampling(); }), "Failed to start PNRRecord");
        manager.stopSampling();
        const std::string log = Logger::instance().text();
        EXPECT_EQ(std::stoi(log.substr(log.rfind("Report Interval is ") + 19)), interval);
        shutdown(listener, SHUT_RDWR);
        firmware.join();
        close(listener);
    }
}

}  // namespace tavocal::test
