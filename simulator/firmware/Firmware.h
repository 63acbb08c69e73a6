#pragma once

#include <optional>
#include <set>
#include <span>
#include <vector>

#include "base/Bytes.h"
#include "simulator/firmware/FirmwareOptions.h"
#include "simulator/firmware/RecordSession.h"
#include "simulator/hub/Flash.h"
#include "simulator/hub/SensorHub.h"
#include "simulator/messages/FirmwareRequest.h"

namespace tavocal::simulator {

class World;

// The sensor hub firmware without its wires: it takes the messages of any number of clients, and
// what it has to say to them is taken from it. Simulated time goes on with advanceTo alone, in
// seconds since the start. One thread at a time.
//
//     Firmware firmware(options, flash, world);
//     firmware.receive(client, clientGuid);
//     firmware.receive(client, request);
//     for (const Firmware::Output& output : firmware.takeOutput()) ...
class Firmware {
  public:
    using Client = RecordSession::Client;

    struct Output {
        Client client = 0;
        Bytes message;
        bool hangsUp = false;  // the connection is to be closed; there is no message
    };

    // REQUIRES: `theWorld` outlives the firmware; the flash's blocks fit their sensors.
    Firmware(const FirmwareOptions& theOptions, Flash theFlash, World& theWorld);

    // A whole message of a client. The first one of each client has to be its GUID.
    void receive(Client client, std::span<const std::uint8_t> message);
    // The client is gone. A session that it has opened stays.
    void disconnect(Client client);

    void advanceTo(double seconds);
    double now() const { return time; }

    // What has to be sent, in order.
    std::vector<Output> takeOutput();

    // Whom a session publishes to, if anybody.
    std::optional<Client> listener() const { return session.owner(); }
    const Flash& flash() const { return stored; }

  private:
    void greet(Client client, std::span<const std::uint8_t> message);
    void answer(Client client, std::span<const std::uint8_t> message);
    FirmwareStatus perform(Client client, const FirmwareRequest& request, Bytes& answer);
    Bytes pdt() const;
    FirmwareStatus getCalibration(const FirmwareRequest& request, Bytes& answer);
    FirmwareStatus setCalibration(const FirmwareRequest& request);
    FirmwareStatus getProperty(const FirmwareRequest& request, Bytes& answer);
    FirmwareStatus setProperty(const FirmwareRequest& request);
    FirmwareStatus start(Client client, const FirmwareRequest& request);
    FirmwareStatus stop(Client client);
    void restart();

    void sendSpoiled(Client client, Bytes answer);
    void send(Client client, Bytes message);
    void hangUp(Client client);

    void leaveSessionBehind();
    void publish(bool all);

    FirmwareOptions options;
    Flash stored;
    SensorHub hub;
    RecordSession session;
    std::set<Client> greeted;
    std::vector<Output> outputs;
    double time = 0.0;
    bool isSilent = false;
};

}  // namespace tavocal::simulator
