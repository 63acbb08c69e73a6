#include "simulator/firmware/RecordSession.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace tavocal::simulator {

namespace {

using Kind = FirmwareFaultKind;

constexpr double kMicrosecondsPerSecond = 1e6;
// The hub has been running for a while when the simulation begins.
constexpr double kUptime = 77.0;
// How old a record becomes before its buffer is published.
constexpr double kPublishMicroseconds = 30000.0;
constexpr std::size_t kMostKept = 8;

std::uint64_t timestamp(double seconds) {
    return static_cast<std::uint64_t>(std::llround((kUptime + seconds) * kMicrosecondsPerSecond));
}

}  // namespace

RecordSession::RecordSession(const FirmwareOptions& theOptions)
    : fault(theOptions.fault),
      faultAfter(theOptions.faultAfter),
      faultSensor(theOptions.faultSensor),
      publisher(theOptions.fault) {}

std::vector<Bytes> RecordSession::open(std::optional<Client> client, double now,
                                       std::vector<LUID> luids) {
    session = Session{client, now, std::move(luids), {}};
    if (!fault.is(Kind::EarlyBuffer)) {
        return {};
    }
    Publisher early(fault);
    early.add(LUID{}, timestamp(now), {});
    return early.take(true);
}

void RecordSession::close() {
    session.reset();
    publisher.clear();
}

bool RecordSession::hasStopped(FirmwareFaultKind kind, double seconds) const {
    return fault.is(kind) && seconds >= session->begin + faultAfter;
}

bool RecordSession::isRecorded(const HubSensor& sensor, double seconds) const {
    const bool faulty = sensor.kind() == faultSensor;
    if (hasStopped(Kind::StreamStops, seconds) || hasStopped(Kind::FirmwareStops, seconds) ||
        (faulty && (fault.is(Kind::SilentSensor) || hasStopped(Kind::SensorStops, seconds)))) {
        return false;
    }
    const std::vector<LUID>& luids = session->luids;
    return luids.empty() || std::find(luids.begin(), luids.end(), sensor.luid()) != luids.end();
}

void RecordSession::record(const HubSensor& sensor, double seconds, const RawReading& reading) {
    if (isRecorded(sensor, seconds)) {
        publisher.add(sensor.luid(), timestamp(seconds),
                      std::span(reading.values).first(reading.count));
    }
}

std::vector<Bytes> RecordSession::takeBuffers(double now, bool all) {
    const bool due =
        !publisher.isEmpty() && static_cast<double>(timestamp(now)) >=
                                    static_cast<double>(publisher.oldest()) + kPublishMicroseconds;
    std::deque<Bytes>& kept = session->kept;
    for (Bytes& buffer : publisher.take(all || due)) {
        kept.push_back(std::move(buffer));
    }
    std::vector<Bytes> taken;
    if (session->owner) {
        taken.assign(kept.begin(), kept.end());
        kept.clear();
    }
    while (kept.size() > kMostKept) {
        kept.pop_front();
    }
    return taken;
}

}  // namespace tavocal::simulator
