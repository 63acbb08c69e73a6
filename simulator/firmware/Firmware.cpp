#include "simulator/firmware/Firmware.h"

#include <algorithm>
#include <array>
#include <utility>

#include "firmware/SmhiLayout.h"
#include "simulator/hub/CalibrationBlocks.h"
#include "simulator/messages/FirmwareAnswer.h"
#include "simulator/messages/SpoiledAnswer.h"
#include "vocabulary/FormFactor.h"

namespace tavocal::simulator {

namespace {

using Kind = FirmwareFaultKind;
using Status = FirmwareStatus;

// {BB579A2E-CC54-4450-B1D0-5E7520DCAD25} as it lies in memory.
constexpr std::array<std::uint8_t, 16> kClientGuid = {
    0x2e, 0x9a, 0x57, 0xbb, 0x54, 0xcc, 0x50, 0x44, 0xb1, 0xd0, 0x5e, 0x75, 0x20, 0xdc, 0xad, 0x25};

constexpr double kLeftoverSeconds = 0.4;

}  // namespace

Firmware::Firmware(const FirmwareOptions& theOptions, Flash theFlash, World& theWorld)
    : options(theOptions),
      stored(std::move(theFlash)),
      hub(theOptions.device, theWorld),
      session(theOptions) {
    hub.restart(stored);
    isSilent = options.fault.is(Kind::SilentFirmware);
    if (options.fault.is(Kind::Leftovers) || options.fault.is(Kind::EndlessLeftovers)) {
        leaveSessionBehind();
    }
}

void Firmware::leaveSessionBehind() {
    hub.switchOn(time);
    session.open(std::nullopt, time, {});
    advanceTo(time + kLeftoverSeconds);
}

// ---- Clients ----

void Firmware::receive(Client client, std::span<const std::uint8_t> message) {
    if (!greeted.contains(client)) {
        greet(client, message);
    } else if (message.size() < smhi::kHeaderSize) {
        hangUp(client);
    } else if (!isSilent) {
        answer(client, message);
    }
}

void Firmware::greet(Client client, std::span<const std::uint8_t> message) {
    if (!std::equal(message.begin(), message.end(), kClientGuid.begin(), kClientGuid.end())) {
        hangUp(client);
    } else if (options.fault.is(Kind::NoGreeting)) {
        hangUp(client);
    } else {
        greeted.insert(client);
        send(client, greeting());
    }
}

void Firmware::disconnect(Client client) {
    greeted.erase(client);
    if (listener() == client) {
        session.giveTo(std::nullopt);
    }
}

std::vector<Firmware::Output> Firmware::takeOutput() {
    return std::exchange(outputs, {});
}

void Firmware::send(Client client, Bytes message) {
    outputs.push_back({client, std::move(message), false});
}

void Firmware::hangUp(Client client) {
    outputs.push_back({client, {}, true});
}

// ---- Commands ----

void Firmware::answer(Client client, std::span<const std::uint8_t> message) {
    FirmwareRequest request;
    Status status = readRequest(message, request);
    const bool bySelf = status != Status::Success || !spoils(options.fault, request.command);
    if (status == Status::Success && request.command == FirmwareCommand::Stop && session.isOpen() &&
        options.fault.is(Kind::EndlessLeftovers)) {
        session.giveTo(client);
        return;
    }
    Bytes reply;
    if (status == Status::Success && (bySelf || !preventsCommand(options.fault))) {
        status = perform(client, request, reply);
    }
    if (reply.empty()) {
        reply = headerAnswer(message[0] & static_cast<std::uint8_t>(~smhi::kResponseFlag), status);
    }
    if (bySelf) {
        send(client, std::move(reply));
    } else {
        sendSpoiled(client, std::move(reply));
    }
}

void Firmware::sendSpoiled(Client client, Bytes answer) {
    Bytes message = spoiled(std::move(answer), options.fault);
    if (!message.empty()) {
        send(client, std::move(message));
    } else if (options.fault.is(Kind::HangUp)) {
        hangUp(client);
    }
}

FirmwareStatus Firmware::perform(Client client, const FirmwareRequest& request, Bytes& answer) {
    switch (request.command) {
        case FirmwareCommand::Reset:
            restart();
            return Status::Success;
        case FirmwareCommand::Enumerate:
            answer = sensorListAnswer(hub.groups());
            return Status::Success;
        case FirmwareCommand::GetCalibration:
            return getCalibration(request, answer);
        case FirmwareCommand::Pdt:
            answer = pdt();
            return Status::Success;
        case FirmwareCommand::SetCalibration:
            return setCalibration(request);
        case FirmwareCommand::GetProperty:
            return getProperty(request, answer);
        case FirmwareCommand::SetProperty:
            return setProperty(request);
        case FirmwareCommand::Start:
            return start(client, request);
        case FirmwareCommand::Stop:
            return stop(client);
    }
    return Status::Unsupported;
}

// The sensor service begins anew, with what the flash holds.
void Firmware::restart() {
    session.close();
    hub.restart(stored);
}

// A name that the firmware's vocabulary doesn't have stands for a value that it doesn't have.
Bytes Firmware::pdt() const {
    constexpr std::uint8_t kUnknown = 0xFF;
    std::uint8_t formFactor = kUnknown;
    std::uint8_t hinge = kUnknown;
    setFormFactorFromText(formFactor, options.device.formFactor);
    setHingeFromText(hinge, options.device.hinge);
    return pdtAnswer(formFactor, hinge);
}

FirmwareStatus Firmware::getCalibration(const FirmwareRequest& request, Bytes& answer) {
    if (hub.find(request.luid) == nullptr) {
        return Status::UnknownSensor;
    }
    answer = blockAnswer(request.luid, stored.block(request.luid));
    return Status::Success;
}

// It takes effect with the next restart.
FirmwareStatus Firmware::setCalibration(const FirmwareRequest& request) {
    if (hub.find(request.luid) == nullptr) {
        return Status::UnknownSensor;
    }
    if (!fitsSensor(request.luid, request.data)) {
        return Status::InvalidParameter;
    }
    stored.store(request.luid, request.data);
    return Status::Success;
}

FirmwareStatus Firmware::getProperty(const FirmwareRequest& request, Bytes& answer) {
    const HubSensor* sensor = hub.find(request.luid);
    if (sensor == nullptr) {
        return Status::UnknownSensor;
    }
    const std::optional<std::uint32_t> value = sensor->property(request.property);
    if (!value) {
        return Status::InvalidParameter;
    }
    answer = propertyAnswer(request.property, *value);
    return Status::Success;
}

FirmwareStatus Firmware::setProperty(const FirmwareRequest& request) {
    HubSensor* sensor = hub.find(request.luid);
    return sensor == nullptr ? Status::UnknownSensor
                             : sensor->setProperty(request.property, request.data, time);
}

// ---- Record session ----

FirmwareStatus Firmware::start(Client client, const FirmwareRequest& request) {
    if (session.isOpen()) {
        return Status::WrongState;
    }
    for (const LUID& luid : request.luids) {
        if (hub.find(luid) == nullptr) {
            return Status::UnknownSensor;
        }
    }
    for (Bytes& early : session.open(client, time, request.luids)) {
        send(client, std::move(early));
    }
    hub.skipTo(time);
    return Status::Success;
}

// Whoever asks gets what is left, ahead of the answer.
FirmwareStatus Firmware::stop(Client client) {
    if (!session.isOpen()) {
        return Status::WrongState;
    }
    session.giveTo(client);
    publish(true);
    session.close();
    return Status::Success;
}

void Firmware::advanceTo(double seconds) {
    time = seconds;
    if (!session.isOpen()) {
        hub.skipTo(seconds);
        return;
    }
    hub.advanceTo(seconds, [this](const HubSensor& sensor, double due, const RawReading& reading) {
        session.record(sensor, due, reading);
    });
    isSilent = isSilent || session.hasStopped(Kind::FirmwareStops, seconds);
    publish(false);
    if (listener() && session.hasStopped(Kind::LostConnection, seconds)) {
        hangUp(*listener());
        session.giveTo(std::nullopt);
    }
}

void Firmware::publish(bool all) {
    for (Bytes& buffer : session.takeBuffers(time, all)) {
        send(*listener(), std::move(buffer));
    }
}

}  // namespace tavocal::simulator
