#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "base/Bytes.h"
#include "simulator/firmware/FirmwareOptions.h"
#include "simulator/firmware/Publisher.h"
#include "simulator/hub/HubSensor.h"

namespace tavocal::simulator {

// The record session of the firmware: whose it is, what it records, and the buffers until they are
// taken. Times are seconds since the start. One thread at a time.
class RecordSession {
  public:
    using Client = int;

    explicit RecordSession(const FirmwareOptions& theOptions);

    bool isOpen() const { return session.has_value(); }
    // Whom it publishes to, if anybody.
    std::optional<Client> owner() const { return session ? session->owner : std::nullopt; }
    // The fault is of that kind, and it is time for it. REQUIRES: the session is open.
    bool hasStopped(FirmwareFaultKind kind, double seconds) const;

    // Records the sensors with these LUIDs, or all if there are none. The result has to go out
    // ahead of the answer. REQUIRES: the session is not open.
    std::vector<Bytes> open(std::optional<Client> client, double now, std::vector<LUID> luids);
    // Forgets what hasn't been taken.
    void close();
    // From now on it is another client's, or nobody's. REQUIRES: the session is open.
    void giveTo(std::optional<Client> client) { session->owner = client; }

    // Both REQUIRE that the session is open.
    void record(const HubSensor& sensor, double seconds, const RawReading& reading);
    // The buffers that the owner has to get by now; none while there is no owner. With `all` also
    // one that isn't full or due.
    std::vector<Bytes> takeBuffers(double now, bool all);

  private:
    struct Session {
        std::optional<Client> owner;  // none once that client has gone
        double begin = 0.0;
        std::vector<LUID> luids;  // what is recorded; all if empty
        std::deque<Bytes> kept;   // buffers that nobody took
    };

    bool isRecorded(const HubSensor& sensor, double seconds) const;

    FirmwareFault fault;
    double faultAfter;
    SensorKind faultSensor;
    std::optional<Session> session;
    Publisher publisher;
};

}  // namespace tavocal::simulator
