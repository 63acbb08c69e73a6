#pragma once

#include <cstdint>

#include "base/Bytes.h"
#include "base/Failures.h"

namespace tavocal {

// The other side neither took nor sent anything within the channel's time-out.
class ChannelTimeout : public SmhiException {
  public:
    using SmhiException::SmhiException;
};

// cancelRead has broken the Read.
class ReadCancelled : public SmhiException {
  public:
    using SmhiException::SmhiException;
};

// The channel to the firmware. It carries whole messages: one Write sends one, one Read gets one.
// One thread at a time uses a channel, but for cancelRead. Several channels may be connected to the
// firmware at the same time. The destructor closes what is open.
//
// Every failure is an SmhiException, the two above among them, and ends the exchange at hand; the
// channel stays open.
class KeluBase {
  public:
    virtual ~KeluBase() = default;

    // Opens the firmware's client. Does nothing on a connected channel. After a failure that came
    // behind the opening the channel counts as connected until Close.
    virtual void Connect() = 0;

    // Waits at most for the channel's time-out, like Read. Fails on an unconnected channel.
    virtual void Write(const Bytes& data) = 0;

    // Waits for one message. `output` becomes exactly as long as the message, or `maximum` bytes if
    // it is longer, whose rest is lost. Of no use after a failure. The end of the connection is a
    // failure.
    virtual void Read(Bytes& output, std::uint32_t maximum) = 0;

    // Makes the next Connect possible. Does nothing on an unconnected channel.
    virtual void Close() = 0;

    // From any thread, also while a Read runs: that Read, or else the next one, fails at once with
    // ReadCancelled and takes no message. Calls that come before such a Read count as one. Close
    // forgets a call that no Read has met. REQUIRES: the channel is not being destroyed.
    virtual void cancelRead() noexcept = 0;
};

}  // namespace tavocal
